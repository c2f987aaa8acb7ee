"""The folders of korvel-fleet's modules are layers: each uses only itself and those below."""

import re
import unittest

import fleet

MODULES = fleet.SOURCE / "fleet/korvel_fleet"
LAYERS = ("commands", "packages", "boards", "common")


class TheLayers(unittest.TestCase):
    def test_are_all_folders(self) -> None:
        self.assertEqual(sorted(path.name for path in MODULES.iterdir() if path.is_dir() and path.name[0] != "_"), sorted(LAYERS))

    def test_use_nothing_above(self) -> None:
        for number, layer in enumerate(LAYERS):
            for module in (MODULES / layer).glob("*.py"):
                used = re.findall(r"^from korvel_fleet\.(\w+)", module.read_text(encoding="utf-8"), re.M)
                self.assertLessEqual(set(used), set(LAYERS[number:]), module)


if __name__ == "__main__":
    unittest.main()
