"""A few of the sample tracks are made and looked at with ffprobe."""
import json
import subprocess
import sys
import unittest

from tools import ROOT, TreeTest, run

sys.path.insert(0, str(ROOT / 'tools/demo'))
import synth  # noqa: E402
import tracks  # noqa: E402


def probe(path):
    answer = subprocess.run(['ffprobe', '-v', 'error', '-of', 'json', '-show_entries',
                             'format=duration:format_tags:stream=codec_name', path],
                            capture_output=True, text=True, check=True)
    return json.loads(answer.stdout)


class SamplesTest(TreeTest):
    def make(self, only):
        folder = self.root / 'samples'
        status, output = run('demo/make_demo.py', folder, '--only', only)
        self.assertEqual(0, status, output)
        files = [path for path in folder.rglob('*') if path.suffix in ('.mp3', '.flac', '.m4a', '.wav')]
        self.assertEqual(1, len(files), files)
        return files[0]

    def test_a_track_has_its_length_tags_and_cover_and_is_the_same_again(self):
        path = self.make('Overpass')
        facts = probe(path)
        self.assertAlmostEqual(28, float(facts['format']['duration']), delta=0.1)
        self.assertEqual('174', facts['format']['tags']['TBPM'])
        self.assertEqual(['mp3', 'mjpeg'], [stream['codec_name'] for stream in facts['streams']])
        first = path.read_bytes()
        self.assertEqual(first, self.make('Overpass').read_bytes())

    def test_a_folder_of_something_else_is_refused_untouched(self):
        self.write({'mine/song.mp3': 'mine'})
        self.assertEqual(1, run('demo/make_demo.py', self.root / 'mine')[0])
        self.assertEqual('mine', (self.root / 'mine/song.mp3').read_text())

    def test_spoilt_files_are_made_from_tracks_of_the_table(self):
        made = {f'{sample.folder}/{sample.name}' for sample in tracks.SAMPLES}
        self.assertEqual(len(tracks.SAMPLES), len(made))
        for source, _ in (tracks.DUPLICATE, tracks.WINDOWS_1251, tracks.TRUNCATED[:2]):
            self.assertIn(source.rpartition('.')[0], made)

    def test_codes_of_keys_name_their_tonics(self):
        for code, expected in {'8A': (9, 'minor'), '5A': (0, 'minor'), '8B': (0, 'major'), '12B': (4, 'major'),
                               '1A': (8, 'minor'), '3B': (1, 'major'), '11A': (6, 'minor')}.items():
            self.assertEqual(expected, synth.tonic_and_mode(code), code)


if __name__ == '__main__':
    unittest.main()
