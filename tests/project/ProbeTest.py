"""The probe answers for each item, failed ones included. Its path stands in VELMORA_PROBE."""
import json
import os
import subprocess
import unittest

from tools import TreeTest

PROBE = os.environ['VELMORA_PROBE']


class ProbeTest(TreeTest):
    def probe(self, *arguments):
        """Exit status and the lines of output as objects."""
        result = subprocess.run([PROBE, *map(str, arguments)], capture_output=True, text=True, check=False)
        return result.returncode, [json.loads(line) for line in result.stdout.splitlines()]

    def check_failures(self, command, cases):
        for name, case in cases.items():
            with self.subTest(f'{command} {name}'):
                path = str(self.root / name)
                status, lines = self.probe(command, path)
                self.assertEqual((1, 1), (status, len(lines)))
                self.assertEqual(path, lines[0]['path'])
                error = lines[0]['error']
                self.assertEqual(case, error['case'])
                self.assertTrue(error['message'])
                self.assertEqual('domain' in error, 'code' in error)

    def test_what_cannot_be_read_is_an_error_object(self):
        self.write({'broken.json': '{"tracks":', 'empty.json': '', 'other.json': '[]', 'folder/x': ''})
        self.check_failures('session', {'missing.json': 'fileNoSuchFile', 'broken.json': 'fileReadCorruptFile',
                                        'empty.json': 'fileReadCorruptFile', 'other.json': 'fileReadCorruptFile'})
        self.assertEqual(1, self.probe('session', self.root / 'folder')[0])
        self.check_failures('tags', {'missing.mp3': 'fileNoSuchFile'})
        self.check_failures('key', {'missing.mp3': 'decodingFailed'})
        self.check_failures('tempo', {'missing.mp3': 'decodingFailed'})
        self.check_failures('waveform', {'missing.mp3': 'cannotOpen'})

    def test_the_run_goes_on_behind_a_failure(self):
        self.write({'Artist - Title.mp3': 'no sound'})
        status, lines = self.probe('tags', self.root / 'missing.mp3', self.root / 'Artist - Title.mp3')
        self.assertEqual(1, status)
        self.assertIn('error', lines[0])
        self.assertEqual('Title', lines[1]['tags']['title'])

    def test_unusable_arguments_are_told_apart(self):
        self.assertEqual((2, []), self.probe('session'))
        self.assertEqual((2, []), self.probe('no-such-command'))


if __name__ == '__main__':
    unittest.main()
