#!/usr/bin/env python3
"""Writes a platform library that does nothing, as C, from the headers of the contract: every
function returns 0, every variable is zero. With it the shipped agent can be linked and looked at.

    python3 null_platform.py [HEADER...] > null_platform.c
"""
import argparse
import pathlib
import re

import places

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
PREPROCESSOR = re.compile(r"^\s*#.*?(?<!\\)$", re.M)
FUNCTION = re.compile(r"^([A-Za-z_][\w\s*]*?[\s*])([A-Za-z_]\w*)\s*\(([^;{}]*)\)\s*;", re.M | re.S)
VARIABLE = re.compile(r"^extern\s+([^;({\"]+?)\s*([A-Za-z_]\w*)\s*;", re.M)


def declarations(header):
    text = header.read_text()
    text = re.sub(r"#ifdef __cplusplus.*?#endif", "", text, flags=re.S)
    return PREPROCESSOR.sub("", COMMENT.sub("", text))


def write_library(headers):
    print(f"/* Made from the headers of the contract by null_platform {places.VERSION}. */")
    for header in headers:
        print(f'#include "platform/{header.name}"')
    for header in headers:
        text = declarations(header)
        for kind, name, arguments in FUNCTION.findall(text):
            if kind.split()[0] in ("typedef", "return", "static"):
                continue
            print(f"{kind.strip()} {name}({' '.join(arguments.split())}) {{ return 0; }}")
        for kind, name in VARIABLE.findall(text):
            print(f"{kind} {name};")



def main():
    parser = argparse.ArgumentParser(
        description="Writes a platform library that does nothing, as C, to standard output.")
    parser.add_argument("headers", nargs="*", type=pathlib.Path, metavar="HEADER",
                        help="headers of the contract; all when none is given")
    parser.add_argument("--version", action="version", version=f"%(prog)s {places.VERSION}")
    arguments = parser.parse_args()
    write_library(arguments.headers or sorted(places.CONTRACT.glob("platform/*.h")))


main()
