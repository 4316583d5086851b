"""Renews the figures of a document: each block between markers is what its command prints.

    print_figures.py FILE [WORD]     only those of which the command has the word

A block begins with the line `<!-- printed by: COMMAND -->` and ends with `<!-- end -->`. Commands run
in the project's folder. Tables stand as they are printed, other output between ```."""
import pathlib
import re
import subprocess
import sys

BLOCK = re.compile(r"(<!-- printed by: (.*?) -->\n).*?(<!-- end -->)", re.DOTALL)
HOME = pathlib.Path(__file__).resolve().parent.parent


def run(command):
    done = subprocess.run(command, shell=True, cwd=HOME, stdout=subprocess.PIPE, text=True)
    output = done.stdout.strip()
    if done.returncode:
        sys.exit(f"{output}\n{command}: it ended with {done.returncode}")
    return output if output.startswith("|") else f"```\n{output}\n```"


def main():
    file, word = pathlib.Path(sys.argv[1]), "".join(sys.argv[2:3])

    def renew(block):
        begin, command, end = block.groups()
        if word not in command:
            return block.group(0)
        print(f"$ {command}", flush=True)
        return f"{begin}\n{run(command)}\n\n{end}"
    file.write_text(BLOCK.sub(renew, file.read_text()))


if __name__ == "__main__":
    main()
