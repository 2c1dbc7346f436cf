# SPDX-License-Identifier: Apache-2.0
"""Writes docs/checks.md from what "vandrel-cli check --list --format ndjson" prints."""
import json
import sys

HEAD = """# Checks

What `vandrel-cli check` looks for. A *note* is a fact worth knowing, a *warning* needs a look, an
*error* needs something done. This page is made from the program: `tools/list-checks` writes it.
"""


def section(check):
    lines = [f"## {check['check']}", "", f"**{check['title']}** ({check['severity']})", "",
             check["explanation"], "", f"*What to do:* {check['nextStep']}"]
    if check.get("reading"):
        lines += ["", "*Read more:* " + ", ".join(f"`{name}`" for name in check["reading"])]
    return "\n".join(lines)


checks = [json.loads(line) for line in sys.stdin]
print(HEAD + "\n" + "\n\n".join(section(check) for check in checks))
