# SPDX-License-Identifier: MIT
"""The tools that look at the repository's files, on repositories made for the purpose."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(sys.argv.pop(1)).resolve()
sys.path += [str(TOOLS), str(TOOLS / 'lint')]
import test_ratio  # noqa: E402
import tracked  # noqa: E402


@unittest.skipUnless(shutil.which('git'), 'there is no git')
class Repository(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        subprocess.run(['git', 'init', '-q', self.root], check=True)

    def add(self, path, content):
        file = self.root / path
        file.parent.mkdir(exist_ok=True)
        file.write_bytes(content)
        subprocess.run(['git', 'add', '-f', path], cwd=self.root, check=True)

    def assert_says(self, tool, lines, code):
        run = subprocess.run([sys.executable, '-B', TOOLS / tool], cwd=self.root,
                             stdout=subprocess.PIPE, universal_newlines=True)
        self.assertEqual((run.stdout.splitlines(), run.returncode), (lines, code))

    def test_what_does_not_belong_there(self):
        self.add('fits', b' ' * 1000000)
        self.add('text', b'core\n\x7fELF')
        (self.root / 'build').write_bytes(b'\x7fELF')  # not tracked
        self.assert_says('lint/tracked.py', [], 0)
        self.add('core', b'\x7fELF\2\1\1' + b' ' * 999994)
        self.add('tool.exe', b'MZ\x90')
        self.add('run.dmp', b'MDMP\x93\xa7')
        self.assert_says('lint/tracked.py', [
            'core has 1000001 bytes', 'core is an ELF file', 'run.dmp is a dump',
            'tool.exe is a Windows program'], 1)

    def test_ratio_of_tests_to_code(self):
        most = '(at most %.2f)' % test_ratio.MOST
        self.add('tests/a.py', b'a\n\n  \n')
        self.add('tests/table.tsv', b'1\n' * 100)
        self.add('code.cpp', b'1\n\t\n2\n3\n')
        self.add('code.h', b'4\n5\n')
        self.assert_says('test_ratio.py', ['1 lines of tests, 5 of code: 0.200 ' + most], 0)
        self.add('tests/a.h', b'b\nc\n')
        self.assert_says('test_ratio.py', ['3 lines of tests, 5 of code: 0.600 ' + most], 1)


class License(unittest.TestCase):
    def test_is_named_at_the_top_of_sources(self):
        line = 'SPDX-License-Identifier: MIT\n'
        for path, text, right in (
                ('a.h', '// ' + line, True), ('a.h', '#pragma once\n', False),
                ('a.sh', '#!/bin/sh\n# ' + line, True), ('a.cpp', '\n\n\n// ' + line, False),
                ('x/CMakeLists.txt', '# ' + line, True), ('CMakeLists.txt', '', False),
                ('a.py', '# SPDX-License-Identifier: MITX\n', False), ('a.md', '', True)):
            self.assertEqual(not tracked.unlicensed(path, text.encode()), right, (path, text))


if __name__ == '__main__':
    unittest.main()
