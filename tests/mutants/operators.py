"""What is changed in a source, one small thing at a time, and where it means something: clang's tree
of the source says what stands there."""
import dataclasses
import re

from clang.cindex import CursorKind as Kind, Index, TypeKind

OTHER_COMPARISON = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
HALF_AS_WIDE = {"uint8_t": None, "uint16_t": "uint8_t", "uint32_t": "uint16_t",
                "uint64_t": "uint32_t", "int64_t": "int32_t"}
UNSIGNED_OR_SIGNED = {TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.SHORT,
                      TypeKind.USHORT, TypeKind.LONGLONG, TypeKind.ULONGLONG, TypeKind.UCHAR,
                      TypeKind.SCHAR, TypeKind.CHAR_S, TypeKind.ENUM}
FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.FUNCTION_TEMPLATE, Kind.LAMBDA_EXPR,
             Kind.CONSTRUCTOR, Kind.DESTRUCTOR}
ROOMS = {Kind.NAMESPACE, Kind.LINKAGE_SPEC, Kind.UNEXPOSED_DECL}
WRAPPERS = {Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR}
# Leaving these out changes nothing on the processors that there are.
WITHOUT_EFFECT = {"va_end"}


@dataclasses.dataclass
class Mutant:
    """A change of a source: texts that take the place of others."""
    file: str
    operator: str
    function: str
    changes: list  # of (start, end, text), by position
    discards: bool = False  # the value of what is changed is not used
    asks: bool = False  # what is changed is a yes or no
    alone: bool = False  # it is compiled on its own, not together with the others
    table: str = ""  # the table that it is in, where it is in no function
    number: int = 0
    occurrence: int = 1
    source: str = ""
    becomes: str = ""

    @property
    def can_be_built(self):
        """What every source sees stands in headers: there, a mutant that cannot stand behind a
        switch is left to the places where the constant is used."""
        return not (self.alone and self.file.endswith(".h"))

    @property
    def key(self):
        """What it is called while lines move."""
        return (self.file, self.function, self.source, self.becomes, self.occurrence)


@dataclasses.dataclass
class Findings:
    mutants: list
    probes: list  # (offset behind the opening brace, function)
    constants: list  # (offset, "const" or "inline") of each constexpr that forbids a switch
    uses: dict  # table -> functions that use it


class Node:
    """A cursor with its place in the source."""

    def __init__(self, cursor, parent, path):
        self.cursor = cursor
        self.kind = cursor.kind
        self.parent = parent
        extent = cursor.extent
        self.start = extent.start.offset
        self.end = extent.end.offset
        self.is_here = bool(extent.start.file and extent.start.file.name == path and
                            self.end > self.start)
        self.children = [Node(child, self, path) for child in cursor.get_children()]


def bare(node):
    """Without the conversions and parentheses around it."""
    while node.kind in WRAPPERS and len(node.children) == 1:
        node = node.children[0]
    return node


class Finder:
    def __init__(self, file, path, text):
        self.file = file
        self.path = path
        self.text = text
        self.found = Findings([], [], [], {})

    def written(self, node):
        return self.text[node.start:node.end]

    def between(self, left, right):
        text = re.sub(r"/\*.*?\*/|//[^\n]*", "", self.text[left.end:right.start], flags=re.S)
        return text.strip()

    def add(self, operator, node, text, **more):
        self.add_changes(operator, node, [(node.start, node.end, text)], **more)

    def add_changes(self, operator, node, changes, **more):
        function = table = ""
        at = node
        while at:
            if at.kind in FUNCTIONS and at.kind != Kind.LAMBDA_EXPR and not function:
                function = at.cursor.spelling
            if at.kind == Kind.VAR_DECL and not function and at.cursor.spelling:
                table = at.cursor.spelling
            if at.kind == Kind.ENUM_DECL and not function:
                table = table or "enum"
            at = at.parent
        self.found.mutants.append(Mutant(
            self.file, operator, function or table, sorted(changes), table=table, **more))

    # --- The walk.

    def visit(self, node):
        if not node.is_here and node.kind not in ROOMS and node.kind != Kind.TRANSLATION_UNIT:
            return
        if node.kind == Kind.STATIC_ASSERT:
            return
        handler = getattr(self, "on_" + node.kind.name.lower(), None)
        if handler and node.is_here:
            handler(node)
        for child in node.children:
            self.visit(child)

    def on_function_decl(self, node):
        body = node.children[-1] if node.children else None
        if body and body.kind == Kind.COMPOUND_STMT:
            head = self.text[node.start:body.start]
            if "constexpr" in head:
                self.found.constants.append((node.start + head.index("constexpr"), "inline"))
            else:
                self.found.probes.append((body.start + 1, node.cursor.spelling))

    on_cxx_method = on_function_template = on_constructor = on_destructor = on_function_decl

    def on_var_decl(self, node):
        head = re.match(r"(static\s+|inline\s+)*constexpr\b", self.written(node))
        if head:
            self.found.constants.append((node.start + head.end() - len("constexpr"), "const"))
        initial = node.children[-1] if node.children else None
        if initial and self.between_name_and(node, initial) == "=":
            self.narrow(node, initial)

    def between_name_and(self, node, initial):
        head = self.text[node.start:initial.start].rstrip()
        return head[-1:]

    def narrow(self, node, initial):
        kind = node.cursor.type.spelling.replace("const ", "")
        value = bare(initial)
        is_known = is_literal(value) or (
            value.kind == Kind.DECL_REF_EXPR and value.cursor.referenced and
            value.cursor.referenced.kind == Kind.ENUM_CONSTANT_DECL)
        if kind in HALF_AS_WIDE and not is_known:
            self.add("width", initial, narrowed(kind, self.written(initial)))

    def on_cxx_static_cast_expr(self, node):
        kind = node.cursor.type.spelling
        if kind in HALF_AS_WIDE and not is_literal(bare(node.children[-1])):
            self.add("width", node, narrowed(kind, self.written(node)))

    def on_binary_operator(self, node):
        left, right = node.children
        operator = self.between(left, right)
        if operator in OTHER_COMPARISON:
            text = f"{self.written(left)} {OTHER_COMPARISON[operator]} {self.written(right)}"
            self.add("comparison", node, text, asks=True)
        elif operator in ("&&", "||"):
            self.add("half a condition", node, self.written(left), asks=True)
            self.add("half a condition", node, self.written(right), asks=True)
        elif operator == "=":
            self.leave_out(node)

    def on_compound_assignment_operator(self, node):
        self.leave_out(node)

    def on_unary_operator(self, node):
        text = self.written(node)
        if text.startswith("!"):
            self.add("comparison", node, self.written(node.children[0]), asks=True)
        elif "++" in (text[:2], text[-2:]) or "--" in (text[:2], text[-2:]):
            self.leave_out(node)

    def on_if_stmt(self, node):
        self.negate(node)

    def on_conditional_operator(self, node):
        self.negate(node)

    def negate(self, node):
        condition = bare(node.children[0])
        if condition.kind in (Kind.CALL_EXPR, Kind.DECL_REF_EXPR, Kind.MEMBER_REF_EXPR,
                              Kind.ARRAY_SUBSCRIPT_EXPR) and condition.is_here:
            self.add("comparison", condition, f"!{self.written(condition)}", asks=True)

    def on_integer_literal(self, node):
        if self.is_inside(node, Kind.CXX_UNARY_EXPR):  # the size of a table's first row is any's
            return
        text = self.written(node)
        match = re.fullmatch(r"(0[xX][0-9a-fA-F]+|[0-9]+)([uUlL]*)", text)
        if not match:
            return
        if self.is_overwritten(node):
            return
        value = int(match[1], 16 if match[1][:2] in ("0x", "0X") else 10)
        is_mask = match[1][:2] in ("0x", "0X") and value > 1
        changed = hex(value >> 1) if is_mask else str(value + 1)
        self.add("width" if is_mask else "constant", node, changed + match[2],
                 alone=self.must_be_constant(node))

    def on_floating_literal(self, node):
        self.add("constant", node, f"({self.written(node)} + 1)",
                 alone=self.must_be_constant(node))

    def on_character_literal(self, node):
        text = self.written(node)
        if text.startswith("'"):
            self.add("constant", node, "'Y'" if text == "'X'" else "'X'",
                     alone=self.must_be_constant(node))

    def on_string_literal(self, node):
        text = self.written(node)
        if text.startswith('"'):
            self.add("constant", node, '"X' + text[1:], alone=self.must_be_constant(node))

    def on_cxx_bool_literal_expr(self, node):
        text = self.written(node)
        if text in ("true", "false") and not self.is_overwritten(node):
            self.add("constant", node, "false" if text == "true" else "true",
                     alone=self.must_be_constant(node))

    def on_decl_ref_expr(self, node):
        target = node.cursor.referenced
        if not target or target.kind != Kind.ENUM_CONSTANT_DECL or self.must_be_constant(node):
            return
        name = self.written(node)
        file = target.location.file
        if file and not file.name.startswith("/usr/") and re.fullmatch(r"\w+", name):
            self.add("constant", node, f"static_cast<decltype({name})>({name} + 1)")

    def is_overwritten(self, node):
        """A variable's first value, where the first statement that knows the variable is an if or a
        return that hands it out to be written: `if (int code = get(&variable))`. Nobody sees it."""
        at = node
        while at.parent and at.parent.kind in WRAPPERS:
            at = at.parent
        variable = at.parent
        if (variable.kind != Kind.VAR_DECL or not variable.parent or
                variable.parent.kind != Kind.DECL_STMT):
            return False
        siblings = variable.parent.parent.children
        name = variable.cursor.spelling
        for statement in siblings[siblings.index(variable.parent) + 1:]:
            if re.search(rf"\b{name}\b", self.written(statement)):
                return (statement.kind in (Kind.IF_STMT, Kind.RETURN_STMT) and
                        self.hands_out(statement.children[0], name))
        return False

    def hands_out(self, node, name):
        condition = node
        if condition.kind == Kind.DECL_STMT:
            condition = condition.children[0]
        return bool(re.search(rf"&{name}\b", self.written(condition)))

    def is_inside(self, node, kind):
        while node and node.kind != kind:
            node = node.parent
        return node is not None

    def must_be_constant(self, node):
        at = node
        while at.parent:
            parent = at.parent
            if parent.kind in (Kind.ENUM_CONSTANT_DECL, Kind.FIELD_DECL, Kind.PARM_DECL):
                return True
            if parent.kind == Kind.CXX_UNARY_EXPR:  # sizeof
                return True
            if parent.kind == Kind.CASE_STMT:
                return at is parent.children[0]
            if parent.kind == Kind.VAR_DECL and self.text[:at.start].rstrip().endswith("["):
                return True
            if parent.kind in FUNCTIONS or parent.kind == Kind.COMPOUND_STMT:
                return False
            if parent.kind == Kind.VAR_DECL and (
                    not parent.parent or parent.parent.kind != Kind.DECL_STMT):
                # Others may read it before the program's initialisations have run.
                return not is_constant(parent)
            at = parent
        return False

    # --- What is left out.

    def is_call(self, node):
        if node.kind != Kind.CALL_EXPR or not node.is_here:
            return False
        return bool(re.match(r"[\w:.\->\[\]*()]+?\(.*\)$", self.written(node), re.S))

    def on_call_expr(self, node):
        if not self.is_call(node):
            return
        name = node.cursor.spelling
        if name in WITHOUT_EFFECT:
            return
        if is_statement(node):
            self.leave_out(node)
        elif self.decides(node):
            self.add("call left out", node, self.value_instead(node))

    def leave_out(self, node):
        if is_statement(node):
            self.add("call left out" if node.kind == Kind.CALL_EXPR else "statement left out",
                     node, "0", discards=True)

    def decides(self, node):
        """Its result is returned, or is the variable that a condition declares."""
        at = node
        while at.parent and at.parent.kind in WRAPPERS:
            at = at.parent
        parent = at.parent
        if parent.kind == Kind.RETURN_STMT:
            return True
        return parent.kind == Kind.VAR_DECL and parent.parent.kind in (
            Kind.IF_STMT, Kind.WHILE_STMT) or (
            parent.kind == Kind.VAR_DECL and parent.parent.kind == Kind.DECL_STMT and
            parent.parent.parent.kind == Kind.IF_STMT)

    def value_instead(self, node):
        """Of a function that returns what it is given: that. Else what stands for success."""
        kind = node.cursor.type.get_canonical()
        arguments = list(node.cursor.get_arguments())
        if len(arguments) == 1 and arguments[0].type.get_canonical().spelling == kind.spelling:
            extent = arguments[0].extent
            return self.text[extent.start.offset:extent.end.offset]
        if kind.kind == TypeKind.POINTER:
            return "nullptr"
        if kind.kind == TypeKind.BOOL:
            return "false"
        if kind.kind == TypeKind.RECORD:
            return f"decltype({self.written(node)}){{}}"
        return "0"

    def on_return_stmt(self, node):
        if not node.children:
            return
        value = bare(node.children[0])
        is_number = node.children[0].cursor.type.get_canonical().kind in UNSIGNED_OR_SIGNED
        is_zero = (value.kind == Kind.DECL_REF_EXPR and value.cursor.referenced and
                   value.cursor.referenced.kind == Kind.ENUM_CONSTANT_DECL and
                   value.cursor.referenced.enum_value == 0)
        if value.kind == Kind.DECL_REF_EXPR and is_number and not is_zero:
            self.add("returned code", node.children[0], "0")

    # --- What is exchanged.

    def on_compound_stmt(self, node):
        for first, second in zip(node.children, node.children[1:]):
            one, other = self.main_call(first), self.main_call(second)
            if not one or not other or self.written(one) == self.written(other):
                continue
            discards = one is bare(first)
            if discards == (other is bare(second)):
                self.add_changes("calls exchanged", one, [
                    (one.start, one.end, self.written(other)),
                    (other.start, other.end, self.written(one))], discards=discards)

    def main_call(self, statement):
        """The call that a statement is, or that an if decides by."""
        node = bare(statement)
        if node.kind == Kind.IF_STMT:
            node = bare(node.children[0])
            if node.kind == Kind.DECL_STMT:
                node = node.children[0]
            if node.kind == Kind.VAR_DECL and node.children:
                node = bare(node.children[-1])
            if node.kind == Kind.UNARY_OPERATOR:
                node = bare(node.children[0])
        return node if self.is_call(node) else None

    # --- A row of a table.

    def on_init_list_expr(self, node):
        parent = node.parent
        while parent.kind in WRAPPERS or parent.kind == Kind.INIT_LIST_EXPR:
            parent = parent.parent
        if parent.kind != Kind.VAR_DECL or node.parent.kind == Kind.INIT_LIST_EXPR:
            return
        kind = parent.cursor.type.get_canonical()
        if kind.kind not in (TypeKind.CONSTANTARRAY, TypeKind.INCOMPLETEARRAY):
            return
        rows = [child for child in node.children if child.is_here]
        if len(rows) < 2:
            return
        for row, following in zip(rows, rows[1:] + [None]):
            if following:
                change = (row.start, following.start, "")
            else:
                change = (rows[-2].end, row.end, "")
            self.add_changes("row left out", row, [change], alone=True)


def is_constant(node):
    kind = node.cursor.type
    while kind.kind in (TypeKind.CONSTANTARRAY, TypeKind.INCOMPLETEARRAY):
        kind = kind.element_type
    return kind.is_const_qualified()


def is_literal(node):
    return node.kind in (Kind.INTEGER_LITERAL, Kind.CHARACTER_LITERAL, Kind.FLOATING_LITERAL,
                         Kind.CXX_BOOL_LITERAL_EXPR)


def narrowed(kind, text):
    half = HALF_AS_WIDE[kind]
    return f"({text}) & 0x7f" if half is None else f"static_cast<{half}>({text})"


def is_statement(node):
    """A statement of its own, whose value nobody uses."""
    at = node
    while at.parent and at.parent.kind == Kind.UNEXPOSED_EXPR:
        at = at.parent
    parent = at.parent
    if parent.kind in (Kind.COMPOUND_STMT, Kind.DEFAULT_STMT):
        return True
    if parent.kind == Kind.CASE_STMT:
        return at is not parent.children[0]
    if parent.kind in (Kind.IF_STMT,):
        return at is not parent.children[0] and at in parent.children[1:]
    if parent.kind in (Kind.FOR_STMT, Kind.WHILE_STMT, Kind.CXX_FOR_RANGE_STMT):
        return at is parent.children[-1]
    return False


# --- The texts by which a mutant is known.

def without_comments(line):
    """A line of source without the comment at its end."""
    return re.sub(r'("(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\')|//.*', lambda m: m[1] or "", line)


def one_line(text):
    return " ".join(" ".join(map(without_comments, text.split("\n"))).split())


def changed(text, changes):
    for start, end, replacement in sorted(changes, reverse=True):
        text = text[:start] + replacement + text[end:]
    return text


def name_mutants(text, mutants):
    """Gives each its number and the lines that it changes, before and after."""
    seen = {}
    for number, mutant in enumerate(mutants, 1):
        mutant.number = number
        start = text.rfind("\n", 0, mutant.changes[0][0]) + 1
        last = mutant.changes[-1][1]
        end = text.find("\n", last)
        end = len(text) if end < 0 else end
        mutant.source = one_line(text[start:end])
        moved = [(s - start, e - start, new) for s, e, new in mutant.changes]
        mutant.becomes = one_line(changed(text[start:end], moved))
        mutant.line = text.count("\n", 0, mutant.changes[0][0]) + 1
        name = (mutant.function, mutant.source, mutant.becomes)
        mutant.occurrence = seen[name] = seen.get(name, 0) + 1


def find_uses(node, tables, function, uses):
    if node.kind in FUNCTIONS and node.kind != Kind.LAMBDA_EXPR:
        function = node.cursor.spelling
    if node.kind == Kind.DECL_REF_EXPR and function and node.cursor.spelling in tables:
        uses.setdefault(node.cursor.spelling, set()).add(function)
    for child in node.children:
        find_uses(child, tables, function, uses)


def find(file, path, text, arguments):
    """The mutants of a source, which the compiler knows as `path`."""
    unit = parse(path, text, arguments)
    errors = [d.spelling for d in unit.diagnostics if d.severity >= 3]
    if errors:
        raise ValueError(f"{file} does not compile: {errors[0]}")
    finder = Finder(file, path, text)
    roots = [Node(cursor, None, path) for cursor in unit.cursor.get_children()
             if cursor.location.file and cursor.location.file.name == path]
    for root in roots:
        finder.visit(root)
    found = finder.found
    unique = {}
    for mutant in found.mutants:
        same = changed(text, mutant.changes)
        if same != text:
            unique.setdefault(same, mutant)
    found.mutants = list(unique.values())
    name_mutants(text, found.mutants)
    tables = {mutant.table for mutant in found.mutants}
    for root in roots:
        find_uses(root, tables, "", found.uses)
    return found


def parse(path, text, arguments):
    return Index.create().parse(
        path, args=arguments,
        unsaved_files=[(path, text.encode("latin-1").decode("utf-8", "replace"))])
