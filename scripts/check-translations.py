#!/usr/bin/env python3
"""Holds the Spanish texts against those of the sources.

Every text of the sources has a finished translation that keeps its placeholders, line breaks, tags, mnemonics and
ends; the table of translations has no text that the sources no longer have. What the layers below the windows say of
failures is among the texts. Prints each breach and ends with 1 if there is one.

Usage: check-translations.py LUPDATE [OPTION...], the options with which the table is brought up to date.
"""

import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
APPLICATION = ROOT / "translations" / "VelantorStressECG_es.ts"
REPORT = ROOT / "translations" / "report_es.ts"

# What windows show the failures of, and how those layers state one: in a call or in a constant.
FAILING_LAYERS = ("platform", "base", "analysis", "acq", "wfdb", "study", "equipment", "recorder", "app")
FAILURE = re.compile(
    r"""(?:TError|TCommError|TReason::\w+,|\b(?:fail|failSetup|require|giveUp|notifyError|reportQuietly)\()([^;{}]*)[;}]"""
)
FAILURE_CONSTANT = re.compile(r"\bchar (\w*(?:[Ff]ailure|[Ii]nvalid)\w*)\[\] =([^;]*);")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')

PLACEHOLDER = re.compile(r"%L?\d{1,2}(?![\d.]*[dfsux])|%n|%%|%[-+0]*\d*(?:\.\d+)?[dfsux](?!\w)")
TAG = re.compile(r"</?\w+[^>]*>")
MNEMONIC = re.compile(r"&(?!&|\w+;)(?=\S)")
END = re.compile(r"(?:\.\.\.|[:!?.])?\s*$")
START = re.compile(r"^\s*")


def messages(path):
    """(context, source, comment) and the translation's element of each text of a table."""
    for context in ElementTree.parse(path).getroot().iter("context"):
        name = context.findtext("name")
        for message in context.iter("message"):
            key = (name, message.findtext("source") or "", message.findtext("comment") or "")
            yield key, message.find("translation")


def forms(translation):
    """The texts of a translation: several where they depend on a number."""
    return [form.text or "" for form in translation.iter("numerusform")] or [translation.text or ""]


def differences(source, text):
    """What the translation of a source text does not keep."""
    checks = {
        "placeholders": lambda each: Counter(PLACEHOLDER.findall(each)),
        "tags": lambda each: Counter(TAG.findall(each)),
        "line breaks": lambda each: each.count("\n"),
        "mnemonic": lambda each: len(MNEMONIC.findall(each)),
        "end": lambda each: END.search(each).group(),
        "start": lambda each: START.search(each).group(),
    }
    return [name for name, of in checks.items() if of(source) != of(text)]


def check_table(path):
    breaches = []
    for (context, source, _), translation in messages(path):
        where = f"{path.name}, {context}, {source!r}"
        if translation is None or translation.get("type"):
            breaches.append(f"{where}: not translated")
            continue
        for text in forms(translation):
            if not text.strip():
                breaches.append(f"{where}: empty")
            breaches += [f"{where}: {what} differ in {text!r}" for what in differences(source, text)]
    return breaches


def check_sources(lupdate, options):
    """The texts of the sources are those of the table."""
    with tempfile.TemporaryDirectory() as folder:
        fresh = Path(folder) / APPLICATION.name
        shutil.copy(APPLICATION, fresh)
        command = [lupdate, *options, str(ROOT / "src"), "-ts", str(fresh)]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        now = {key for key, _ in messages(fresh)}
    known = {key for key, _ in messages(APPLICATION)}
    breaches = [f"{context}, {source!r}: new in the sources" for context, source, _ in sorted(now - known)]
    breaches += [f"{context}, {source!r}: no longer in the sources" for context, source, _ in sorted(known - now)]
    return breaches + ([] if now else ["no text found in the sources"])


def failure_texts(source):
    """What a source says of failures: literals in one piece may stand on several lines."""
    code = re.sub(r"//[^\n]*|^ *#[^\n]*", "", source, flags=re.MULTILINE)
    joined = re.sub(r'"\s+"', "", code)
    found = [match.group(1) for match in FAILURE.finditer(joined)]
    found += [match.group(2).replace('"Failure"', "") for match in FAILURE_CONSTANT.finditer(joined)]
    return {text for part in found for text in LITERAL.findall(part) if text}


def check_failures():
    """Each text of a failure can be shown in Spanish. A text in front of another stands for "text%1"."""
    known = {source for (context, source, _), _ in messages(APPLICATION) if context == "Failure"}
    breaches = []
    count = 0
    for layer in FAILING_LAYERS:
        for path in sorted((ROOT / "src" / layer).rglob("*.[ch]*")):
            texts = failure_texts(path.read_text(encoding="utf-8"))
            count += len(texts)
            missing = sorted(texts - known - {text.removesuffix("%1") for text in known})
            breaches += [f"{path.relative_to(ROOT)}: {text!r} is missing in FailureText.cpp" for text in missing]
    return breaches + ([] if count > 40 else [f"only {count} texts of failures found in the sources"])


def main():
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    breaches = check_table(APPLICATION) + check_table(REPORT) + check_sources(sys.argv[1], sys.argv[2:])
    breaches += check_failures()
    total = sum(1 for _ in messages(APPLICATION))
    print("\n".join(breaches) if breaches else f"{total} texts are translated.")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
