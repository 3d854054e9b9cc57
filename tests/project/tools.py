"""What the tests of the project's scripts share."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def run(script, *arguments, **options):
    """Runs a Python script of tools/ and returns its exit status and its output with its errors."""
    result = subprocess.run([sys.executable, ROOT / 'tools' / script, *map(str, arguments)], text=True, check=False,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    return result.returncode, result.stdout


class TreeTest(unittest.TestCase):
    """A test with a folder of its own to write small source trees to."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def write(self, files):
        for name, text in files.items():
            path = self.root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding='utf-8')
