"""The example alert rules and the example dashboard fit the metrics that the programs write."""

import json
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path
from typing import Any

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
EXAMPLES = SOURCE / "fleet/examples"
SSH_CONFIG = """\
Host *
    User root
    IdentityFile {key}
    ProxyCommand {boardsim} --deployment iwf --ssh --authorized-keys {key}.pub
    StrictHostKeyChecking no
    UserKnownHostsFile /dev/null
    LogLevel ERROR
"""


def promtool(*words: str | Path) -> tuple[int, str]:
    outcome = subprocess.run(["promtool", *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, check=False)
    return outcome.returncode, outcome.stdout


def dashboard() -> dict[str, Any]:
    return json.loads((EXAMPLES / "dashboard.json").read_text(encoding="utf-8"))


def dashboard_queries() -> list[str]:
    return [target["expr"].replace("$board", ".*") for panel in dashboard()["panels"] for target in panel["targets"]]


def names_and_values(text: str) -> tuple[set[str], set[str]]:
    """The metrics of korvel in a text, and the names of values that it selects or has."""
    return set(re.findall(r"\bkorvel_\w+", text)), set(re.findall(r'\bname="([^"]*)"', text))


def metrics_of_a_board(folder: Path) -> str:
    """What korvel-fleet writes for one board, collected over ssh."""
    key = folder / "key"
    subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", key], check=True)
    (folder / "ssh_config").write_text(SSH_CONFIG.format(key=key, boardsim=BUILD / "boardsim"), encoding="utf-8")
    for words in (["collect", "-w", "board1", "--ssh", f"ssh -F {folder}/ssh_config", "-o", folder / "packages"],
                  ["status", folder / "packages", "--metrics", folder / "korvel.prom"]):
        subprocess.run([BUILD / "korvel-fleet", *words], check=True, stdout=subprocess.DEVNULL)
    return (folder / "korvel.prom").read_text(encoding="utf-8")


class ExamplesTest(unittest.TestCase):
    maxDiff = None

    def test_rules_are_valid_and_give_the_alerts_of_their_examples(self) -> None:
        self.assertEqual(promtool("check", "rules", EXAMPLES / "alerts.yml")[0], 0)
        status, text = promtool("test", "rules", EXAMPLES / "alerts_test.yml")
        self.assertEqual(status, 0, text)

    def test_each_rule_has_an_example_with_its_alert_and_one_without(self) -> None:
        alerts = re.findall(r"- alert: (\w+)", (EXAMPLES / "alerts.yml").read_text(encoding="utf-8"))
        examples = (EXAMPLES / "alerts_test.yml").read_text(encoding="utf-8")
        silent = r"alertname: (\w+)(?:, |\n +)exp_alerts: \[\]"
        loud = r"alertname: (\w+)\n +exp_alerts:\n"
        self.assertEqual((set(re.findall(silent, examples)), set(re.findall(loud, examples))),
                         (set(alerts), set(alerts)))

    def test_queries_of_the_dashboard_are_valid(self) -> None:
        rules = [{"record": f"dashboard:{number}", "expr": query} for number, query in enumerate(dashboard_queries())]
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "rules.yml"
            file.write_text(json.dumps({"groups": [{"name": "dashboard", "rules": rules}]}), encoding="utf-8")
            status, text = promtool("check", "rules", file)
        self.assertEqual(status, 0, text)

    def test_rules_and_dashboard_use_only_metrics_and_values_of_a_real_board(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            metrics, values = names_and_values(metrics_of_a_board(Path(folder)))
        for text in ((EXAMPLES / "alerts.yml").read_text(encoding="utf-8"), "\n".join(dashboard_queries())):
            used_metrics, used_values = names_and_values(text)
            self.assertLessEqual(used_metrics, metrics)
            self.assertLessEqual(used_values, values)


if __name__ == "__main__":
    unittest.main()
