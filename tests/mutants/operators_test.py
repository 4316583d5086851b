"""The operators on a source of a few lines."""
import unittest

import operators
import together

SOURCE = """// Comment.
typedef unsigned uint32_t;
typedef unsigned short uint16_t;
typedef unsigned char uint8_t;
enum { FIRST_CODE = 7 };
int get(int port, uint32_t* value);
void write_number(const char* key, int number);
void save();

const int rows[] = {10, 20, 30};

int report(int port) {
    uint32_t value = 0;
    if (int code = get(port, &value)) // why
        return code;
    if (port < 3 && value == 0x0f)
        return FIRST_CODE;
    uint16_t narrow = static_cast<uint16_t>(value);
    write_number("key", narrow);
    save();
    return rows[port];
}
"""
PATH = "report.cpp"
ARGUMENTS = ["-x", "c++", "-std=c++17"]


def found():
    return operators.find(PATH, PATH, SOURCE, ARGUMENTS)


def of(operator):
    return [(mutant.source, mutant.becomes) for mutant in found().mutants
            if mutant.operator == operator]


class Operators(unittest.TestCase):
    def test_a_comparison_takes_its_neighbour_in(self):
        line = "if (port < 3 && value == 0x0f)"
        self.assertEqual(of("comparison"), [(line, "if (port <= 3 && value == 0x0f)"),
                                            (line, "if (port < 3 && value != 0x0f)")])

    def test_each_half_of_a_condition_stands_alone(self):
        line = "if (port < 3 && value == 0x0f)"
        self.assertEqual(of("half a condition"), [(line, "if (port < 3)"),
                                                  (line, "if (value == 0x0f)")])

    def test_a_constant_is_another_and_a_first_value_that_nobody_sees_is_left_alone(self):
        changed = [becomes for _, becomes in of("constant")]
        self.assertIn("enum { FIRST_CODE = 8 };", changed)
        self.assertIn("const int rows[] = {10, 21, 30};", changed)
        self.assertIn('write_number("Xkey", narrow);', changed)
        self.assertIn("if (port < 4 && value == 0x0f)", changed)
        self.assertIn("return static_cast<decltype(FIRST_CODE)>(FIRST_CODE + 1);", changed)
        self.assertNotIn("uint32_t value = 1;", changed)

    def test_a_call_is_left_out(self):
        self.assertEqual(of("call left out"), [
            ("if (int code = get(port, &value))", "if (int code = 0)"),
            ('write_number("key", narrow);', "0;"), ("save();", "0;")])

    def test_two_calls_in_a_row_are_exchanged(self):
        self.assertEqual(of("calls exchanged"), [
            ('write_number("key", narrow); save();', 'save(); write_number("key", narrow);')])

    def test_a_mask_loses_its_highest_bit_and_a_conversion_half_its_width(self):
        self.assertIn(("if (port < 3 && value == 0x0f)", "if (port < 3 && value == 0x7)"),
                      of("width"))
        line = "uint16_t narrow = static_cast<uint16_t>(value);"
        self.assertIn(line, [source for source, _ in of("width")])

    def test_a_code_that_is_returned_is_0(self):
        self.assertEqual(of("returned code"), [("return code;", "return 0;"),
                                               ("return FIRST_CODE;", "return 0;")])

    def test_a_row_of_a_table_is_left_out(self):
        self.assertEqual([becomes for _, becomes in of("row left out")], [
            "const int rows[] = {20, 30};", "const int rows[] = {10, 30};",
            "const int rows[] = {10, 20};"])


class Keys(unittest.TestCase):
    def test_no_two_mutants_have_the_same_name(self):
        mutants = found().mutants
        self.assertEqual(len({mutant.key for mutant in mutants}), len(mutants))

    def test_a_name_survives_when_lines_move_and_comments_change(self):
        moved = SOURCE.replace("// Comment.\n", "// Another.\n\n\n").replace("// why", "")
        after = operators.find(PATH, PATH, moved, ARGUMENTS)
        self.assertEqual([mutant.key for mutant in found().mutants],
                         [mutant.key for mutant in after.mutants])


class Together(unittest.TestCase):
    def test_all_mutants_compile_in_one_source_but_those_that_must_be_constant(self):
        findings = found()
        switch = __file__.replace("operators_test.py", "switch.h")
        text = together.put_together(PATH, PATH, SOURCE, findings, ARGUMENTS, switch)
        self.assertEqual(together.broken_lines(PATH, text, ARGUMENTS), set())
        alone = {mutant.operator for mutant in findings.mutants if mutant.alone}
        self.assertEqual(alone, {"row left out", "constant"})
        self.assertEqual([mutant.becomes for mutant in findings.mutants
                          if mutant.alone and mutant.operator == "constant"],
                         ["enum { FIRST_CODE = 8 };"])
        for mutant in findings.mutants:
            times = text.count(f".is({mutant.number})")
            self.assertEqual(times, 0 if mutant.alone else len(mutant.changes), mutant)
