"""tools/setup against stand-ins for the package tools, found first on PATH."""
import os
import subprocess
import unittest

from tools import ROOT, TreeTest

PROGRAMS = {
    # Knows everything as installed but what MISSING names, and asks to remove what DEINSTALLED names.
    'dpkg-query': '''shift 3
for name in "$@"; do
    case " $MISSING " in *" $name "*) status=1; continue ;; esac
    case " $DEINSTALLED " in *" $name "*) printf 'config-files:%s ' "$name" ;; *) printf 'installed:%s ' "$name" ;; esac
done
exit ${status:-0}''',
    'apt-get': 'echo "apt-get $*" >> "$CALLS"; exit ${APT_STATUS:-0}',
    'id': 'echo "${FAKE_UID:-0}"',
    'sudo': 'echo "sudo $*" >> "$CALLS"; exit 1',
}


class SetupTest(TreeTest):
    def setUp(self):
        super().setUp()
        for name, text in PROGRAMS.items():
            self.write({name: f'#!/bin/bash\n{text}\n'})
            (self.root / name).chmod(0o755)
        self.calls = self.root / 'calls'
        self.calls.touch()

    def setup_run(self, *groups, **environment):
        result = subprocess.run([ROOT / 'tools/setup', *groups], text=True, check=False, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                env={**os.environ, 'PATH': f'{self.root}:{os.environ["PATH"]}', 'CALLS': str(self.calls),
                                     'MISSING': '', 'DEINSTALLED': '', **environment})
        return result.returncode, result.stdout, self.calls.read_text().splitlines()

    def test_nothing_missing_calls_nothing(self):
        self.assertEqual((0, '', []), self.setup_run('build', 'run', 'test', 'long'))

    def test_only_what_is_missing_of_the_named_groups_is_installed(self):
        status, output, calls = self.setup_run('build', 'run', MISSING='ffmpeg xvfb', DEINSTALLED='ccache')
        self.assertEqual((0, 'Installing: ccache ffmpeg\n'), (status, output))
        self.assertEqual(2, len(calls))
        self.assertTrue(calls[0].endswith(' update'), calls)
        self.assertTrue(calls[1].endswith(' install -y --no-install-recommends ccache ffmpeg'), calls)

    def test_a_failed_installation_fails_and_names_the_command(self):
        status, output, _ = self.setup_run('run', MISSING='ffmpeg', APT_STATUS='100')
        self.assertEqual(1, status)
        self.assertIn('sudo apt-get install --no-install-recommends ffmpeg', output)

    def test_without_a_way_to_become_root_the_command_is_printed(self):
        status, output, calls = self.setup_run('run', MISSING='ffmpeg', FAKE_UID='1000')
        self.assertEqual(1, status)
        self.assertIn('sudo apt-get install --no-install-recommends ffmpeg\n', output)
        self.assertEqual(['sudo -n true'], calls)

    def test_unusable_arguments(self):
        self.assertEqual(2, self.setup_run()[0])
        self.assertEqual(2, self.setup_run('nonsense')[0])


if __name__ == '__main__':
    unittest.main()
