"""The dynamic symbols that korvel shares with the board's two libraries."""

import os
import subprocess
import unittest
from pathlib import Path

BUILD = Path(os.environ["KORVEL_BUILD"])
NM = os.environ.get("NM", "nm")

SMLOG = "_ZN5SmLog17getClientInstanceEPKcj"
VASK = ["vask_cma_phy_to_virt", "vask_cma_process_init", "vask_security_is_secure_env"]
TYPE_OF_SMLOG = ["_ZTI5SmLog", "_ZTS5SmLog"]


def symbols(binary: Path, which: str) -> list[str]:
    """The sorted names of the dynamic symbol table, without symbols of versioned libraries."""
    command = [NM, "--dynamic", which, "--format=just-symbols", binary]
    listing = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    return sorted(name for name in listing.split() if "@" not in name)


def stand_in(name: str) -> Path:
    (library,) = BUILD.glob(f"lib*/**/korvel/{name}")
    return library


class PlatformSymbols(unittest.TestCase):
    def test_of_the_log_library_are_one_function_and_a_type(self) -> None:
        self.assertEqual(symbols(stand_in("libnetfpsmlog.so"), "--defined-only"), [SMLOG, *TYPE_OF_SMLOG])

    def test_of_the_driver_abstraction_are_three_functions(self) -> None:
        self.assertEqual(symbols(stand_in("libWENVASK.so"), "--defined-only"), VASK)

    def test_that_the_program_needs_are_four_functions(self) -> None:
        wanted = symbols(BUILD / "korvel", "--undefined-only")
        ours = [name for name in wanted if "SmLog" in name or name.startswith("vask_")]
        self.assertEqual(ours, [SMLOG, *VASK])


if __name__ == "__main__":
    unittest.main()
