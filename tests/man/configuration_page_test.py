"""fpdispatcher.conf(5) describes exactly the keys that the code reads."""

import re
import unittest

import manual


def keys_in_code() -> set[str]:
    code = (manual.SOURCE / "src" / "common" / "config" / "Config.cpp").read_text()
    looked_up = re.findall(r'find\("(\w+)"\)', code)
    in_table = re.findall(r'"(\w+CfgPath)"', code)
    return {*looked_up, *in_table}


class ConfigurationPageTest(unittest.TestCase):
    def test_describes_exactly_the_keys_that_the_code_reads(self) -> None:
        self.assertEqual(manual.item_heads("fpdispatcher.conf.5", "Ic"), keys_in_code())

    def test_has_every_key_in_its_example(self) -> None:
        example = re.findall(r"^(\w+) = ", manual.section("fpdispatcher.conf.5", "EXAMPLES"), re.M)
        self.assertEqual(sorted(example), sorted(keys_in_code()))


if __name__ == "__main__":
    unittest.main()
