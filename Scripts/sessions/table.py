"""The tables of what was seen where, made of the recorded results of the sessions.

docs/sessions.json has the results as they were last recorded; docs/sessions.md shows all of them, and a block of README.md
counts them. Scripts/check-docs compares the three.
"""

import json

DATA, PAGE, README = "docs/sessions.json", "docs/sessions.md", "README.md"
BEGIN, END = "<!-- from docs/sessions.json, by Scripts/sessions --update-table -->", "<!-- end -->"
SIGNS = {"seen": "yes", "not seen": "NO", "not applicable": "-"}


def cell(text):
    return text.replace("|", "\\|").replace("\n", " ")


def recorded(results, names):
    """The text of docs/sessions.json. `names`: the words for each check, in their order."""
    sessions = {key: {"title": result["title"], "checks": result["checks"]} for key, result in results.items()}
    return json.dumps({"names": names, "sessions": sessions}, indent=1) + "\n"


def words_for(names, check):
    return names.get(check, check)


def page(record):
    """The text of docs/sessions.md."""
    names, sessions = record["names"], record["sessions"].values()
    lines = ["# Whole desktops", "",
             "What `Scripts/sessions` saw on each of these sessions, from outside: by screenshots, by what assistive technology",
             "reads, and by where typed text arrives. This page is generated from the recorded results; do not edit it.", "",
             "| | " + " | ".join(cell(session["title"]) for session in sessions) + " |",
             "|---|" + "---|" * len(sessions)]
    for name, words in names.items():
        states = [SIGNS.get(session["checks"].get(name, {}).get("state"), "") for session in sessions]
        lines.append(f"| {words} | " + " | ".join(states) + " |")
    lines += ["", "\"-\": not applicable, for the reason given below; empty: not tried, since an earlier check failed.", ""]
    for session in sessions:
        lines += [f"## {session['title']}", ""]
        for name, check in session["checks"].items():
            detail = f" ({cell(check['detail'])})" if check["detail"] else ""
            lines.append(f"- {words_for(names, name)}: {check['state']}{detail}")
        lines.append("")
    return "\n".join(lines).rstrip() + "\n"


def block(record):
    """The block of README.md, with its markers."""
    lines = [BEGIN, "| Desktop | Checks that saw what they should | Those that did not |", "|---|---|---|"]
    for session in record["sessions"].values():
        states = {name: session["checks"].get(name, {}).get("state") for name in record["names"]}
        states.update((name, check["state"]) for name, check in session["checks"].items())
        wanted = [name for name, state in states.items() if state != "not applicable"]
        seen = sum(states[name] == "seen" for name in wanted)
        told = [words_for(record["names"], name) for name in wanted if states[name] == "not seen"]
        untried = sum(states[name] is None for name in wanted)
        told += [f"{untried} not tried after that"] if untried else []
        lines.append(f"| {cell(session['title'])} | {seen} of {len(wanted)} | {cell('; '.join(told))} |")
    return "\n".join([*lines, END])


def with_block(readme, record):
    """README.md with the block in the place of the one that it has."""
    before, _, rest = readme.partition(BEGIN)
    if not rest:
        raise ValueError(f"{README} has no line \"{BEGIN}\"")
    return before + block(record) + rest.partition(END)[2]


def write(root, results, names):
    """Records the results, and writes what is made of them."""
    text = recorded(results, names)
    record = json.loads(text)
    (root / DATA).write_text(text)
    (root / PAGE).write_text(page(record))
    (root / README).write_text(with_block((root / README).read_text(), record))
