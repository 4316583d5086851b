#!/usr/bin/env python3
"""Makes a firmware image for a simulated switch.

    make_image.py VERSION FILE [--payload FILE | --size BYTES] [--built SECONDS]

An image is a header of 76 bytes and a payload; numbers have their most significant byte first.

    offset  bytes
         0      4  "VXFW"
         4     32  version, a text padded with NULs
        36      4  when it was built, seconds since 1970-01-01 00:00:00 UTC
        40      4  length of the payload in bytes
        44     32  SHA-256 over bytes 4 to 43 and the payload
        76         payload
"""
import argparse
import hashlib
import pathlib
import struct
import time

import places

VERSION_SIZE = 32
DEFAULT_SIZE = 64 * 1024


def make_image(version, payload=b"\x5a" * DEFAULT_SIZE, built=0):
    """The bytes of an image."""
    text = version.encode("ascii")
    if len(text) > VERSION_SIZE:
        raise ValueError(f"a version has at most {VERSION_SIZE} characters")
    described = text.ljust(VERSION_SIZE, b"\0") + struct.pack(">II", built, len(payload))
    return b"VXFW" + described + hashlib.sha256(described + payload).digest() + payload


def main():
    parser = argparse.ArgumentParser(description="Makes a firmware image for a simulated switch.")
    parser.add_argument("version", help="for example 1.1.0")
    parser.add_argument("file", type=pathlib.Path)
    content = parser.add_mutually_exclusive_group()
    content.add_argument("--payload", type=pathlib.Path, help="what is to run")
    content.add_argument("--size", type=int, default=DEFAULT_SIZE, help="bytes of a made-up payload")
    parser.add_argument("--built", type=int, default=int(time.time()), help="seconds since 1970")
    parser.add_argument("--version", action="version", version=f"%(prog)s {places.VERSION}")
    arguments = parser.parse_args()
    payload = arguments.payload.read_bytes() if arguments.payload else b"\x5a" * arguments.size
    arguments.file.write_bytes(make_image(arguments.version, payload, arguments.built))


if __name__ == "__main__":
    main()
