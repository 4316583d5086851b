"""A source with all its mutants in it, each of them behind a switch: compiled once, a mutant costs a
run of its tests and nothing else. What cannot stand behind a switch is compiled alone."""
import re

import operators


def instrumented(found, text, lonely):
    """The source with its switches. Nothing moves to another line."""
    name = "vx_mutants_here"
    inserted = []  # (offset, order, text)
    for offset, word in found.constants:
        if offset not in lonely:
            inserted.append((offset, 0, word + " /*", "open"))
            inserted.append((offset + len("constexpr"), 0, "*/", "close"))
    for number, (offset, _) in enumerate(found.probes, len(found.mutants) + 1):
        inserted.append((offset, 0, f" (void){name}.is({number});", "probe"))
    for mutant in found.mutants:
        if mutant.alone:
            continue
        as_type = "(void)" if mutant.discards else "!!" if mutant.asks else ""
        for start, end, replacement in mutant.changes:
            new = operators.one_line(replacement)
            size = end - start
            head = f"({name}.is({mutant.number})?{as_type}({new}):{as_type}("
            inserted.append((start, -size, head, "open"))
            inserted.append((end, size, "))", "close"))
    return with_insertions(text, inserted)


def with_insertions(text, inserted):
    """At one place, what ends there is closed first, the inner one first; then what begins there is
    opened, the outer one first."""
    inserted.sort(key=lambda item: (item[0], item[3] != "close", item[1]))
    parts = []
    last = 0
    for offset, _, addition, _ in inserted:
        parts += [text[last:offset], addition]
        last = offset
    parts.append(text[last:])
    return "".join(parts)


def opening(file, found):
    count = len(found.mutants) + len(found.probes)
    return ('#pragma clang diagnostic ignored "-Weverything"\n'
            f'#include "{{switch}}"\nstatic const vx_mutants::Source vx_mutants_here = '
            f'vx_mutants::enter("{file}", {count});\n')


def put_together(file, path, text, found, arguments, switch):
    """The source to compile. Mutants that do not compile behind a switch are marked `alone`."""
    lonely = set()
    head = opening(file, found).replace("{switch}", str(switch))
    is_header = path.endswith(".h")
    if is_header:
        tag = re.sub(r"\W", "_", file)
        head = head.replace("vx_mutants_here", f"vx_mutants_{tag}")
    for _ in range(12):
        body = instrumented(found, text, lonely)
        if is_header:
            body = body.replace("vx_mutants_here", f"vx_mutants_{tag}")
            body = body.replace("#pragma once", "", 1)
        whole = ("#pragma once\n" if is_header else "") + head + "#line 1\n" + body
        lines = broken_lines(path, whole, arguments)
        if not lines:
            return whole
        if not send_away(found, text, lines, lonely):
            break
    for mutant in found.mutants:
        mutant.alone = True
    lonely.update(offset for offset, _ in found.constants)
    found.probes.clear()
    return text


def broken_lines(path, text, arguments):
    lines = set()
    for diagnostic in operators.parse(path, text, arguments + ["-ferror-limit=0"]).diagnostics:
        if diagnostic.severity < 3:
            continue
        for item in [diagnostic, *diagnostic.children]:
            # libclang counts lines of the file as it is, whatever #line says
            lines.add(item.location.line)
    above = text[:text.index("#line 1\n")].count("\n") + 1 if "#line 1\n" in text else 0
    return {line - above for line in lines}


def send_away(found, text, lines, lonely):
    """Marks what stands in the broken lines; False when nothing was left to mark."""
    marked = False
    for mutant in found.mutants:
        first = text.count("\n", 0, mutant.changes[0][0]) + 1
        last = text.count("\n", 0, mutant.changes[-1][1]) + 1
        if not mutant.alone and any(first <= line <= last for line in lines):
            mutant.alone = marked = True
    if marked:
        return True
    for offset, _ in found.constants:
        if offset not in lonely:
            lonely.add(offset)
            marked = True
    return marked
