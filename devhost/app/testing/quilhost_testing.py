# SPDX-License-Identifier: MIT
"""Tests of render scripts: the runner behind `quilhost --test`, and a test case that renders and
compares pictures.

    from quilhost_testing import PictureTest

    SCENE = "model.obj"        # loaded anew for this module's tests

    class Fog(PictureTest):
        def test_far_is_grey(self):
            self.assertPicture(self.render(320, 240), "fog.png")
"""
import fnmatch
import imp
import os
import shutil
import sys
import tempfile
import time
import traceback
import unittest
from itertools import groupby

import quilhost
from quilhost_junit import write_junit


class PictureTest(unittest.TestCase):
    """A test case that renders the scene and compares what came of it with pictures in files."""

    def folder(self):
        """A folder for files of this test, which goes when the test has ended."""
        if not hasattr(self, '_folder'):
            self._folder = tempfile.mkdtemp(prefix='quilhost_')
            self.addCleanup(shutil.rmtree, self._folder)
        return self._folder

    def render(self, width, height, name='picture.png'):
        """Has the host render the scene with the registered callbacks; the size is in pixels.
        Returns the path of the file, which is in the test's folder."""
        path = os.path.join(self.folder(), name)
        quilhost.render(path, width, height)
        return path

    def assertPicture(self, path, reference, tolerance=2, pixels=0):
        """Fails unless the picture has the reference's size and all but at most `pixels` pixels
        differ from it by at most `tolerance` in each channel, 0 to 255. A reference that is not
        absolute is beside the test's module. What does not fit is kept as REFERENCE.actual.png: to
        accept it, give it the reference's name."""
        module = sys.modules[type(self).__module__]
        reference = os.path.join(os.path.dirname(os.path.abspath(module.__file__)), reference)
        if not os.path.exists(reference):
            self._reject(path, reference, "there is no reference picture '%s'" % reference)
        found, expected = read_picture(path), read_picture(reference)
        if found[:2] != expected[:2]:
            self._reject(path, reference, "the picture has %d x %d pixels, '%s' has %d x %d"
                         % (found[:2] + (reference,) + expected[:2]))
        differences = picture_differences(found[2], expected[2], tolerance)
        if len(differences) > pixels:
            at, most = differences[0][0], max(difference for _, difference in differences)
            self._reject(path, reference, "%d of %d pixels differ from '%s', by up to %d; the "
                         'first is in column %d and row %d from the bottom'
                         % (len(differences), found[0] * found[1], reference, most,
                            at % found[0], at // found[0]))

    def _reject(self, path, reference, message):
        kept = os.path.splitext(reference)[0] + '.actual.png'
        shutil.copyfile(path, kept)
        self.fail("%s; the picture is kept as '%s'" % (message, kept))


def read_picture(path):
    """Width, height and the bytes of the pixels, four each, row by row from the bottom."""
    from OpenQuil import ZImage
    image = ZImage()
    image.readFromFile(path, ZImage.kByte)
    return image.width(), image.height(), bytearray(image.readPixels())


def picture_differences(found, expected, tolerance):
    """The place and the greatest difference of each pixel that differs by more than the
    tolerance."""
    if found == expected:
        return []
    greatest = [max(abs(found[i + k] - expected[i + k]) for k in range(4))
                for i in range(0, len(found), 4)]
    return [(i, difference) for i, difference in enumerate(greatest) if difference > tolerance]


# Finding the tests

def load(paths, patterns):
    """The tests of files, folders and dotted names, those that fit one of the patterns."""
    loader = unittest.TestLoader()
    tests = []
    for path in paths:
        if os.path.isdir(path):
            for file in sorted(test_files(path)):
                tests += load_one(loader, file)
        else:
            tests += load_one(loader, path)
    return [test for test in tests if fits(test.id(), patterns)]


def test_files(folder):
    for place, folders, names in os.walk(folder):
        folders.sort()
        for name in names:
            if fnmatch.fnmatch(name, 'test*.py'):
                yield os.path.join(place, name)


def load_one(loader, path):
    """A module that cannot be imported is a test that fails."""
    try:
        if path.endswith('.py'):
            return list(flat(loader.loadTestsFromModule(import_file(path))))
        if '' not in sys.path:
            sys.path.insert(0, '')
        return list(flat(loader.loadTestsFromName(path)))
    except (KeyboardInterrupt, MemoryError):
        raise
    except BaseException:
        return [failed_load(path, traceback.format_exc())]


def import_file(path):
    """The module of the file, under its plain name, with its folder first on the search path."""
    folder, name = os.path.split(os.path.abspath(path))
    name = os.path.splitext(name)[0]
    if folder in sys.path:
        sys.path.remove(folder)
    sys.path.insert(0, folder)
    sys.modules.pop(name, None)  # of another folder
    return imp.load_source(name, path)


def failed_load(path, report):
    def fail(self):
        raise ImportError('cannot load %s\n%s' % (path, report))
    name = os.path.splitext(os.path.basename(path))[0] if path.endswith('.py') else path
    return type('FailedLoad', (unittest.TestCase,), {name: fail, '__module__': name})(name)


def flat(suite):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            for each in flat(test):
                yield each
        else:
            yield test


def fits(name, patterns):
    """A pattern with * has to fit the whole name, another is a part of it."""
    return not patterns or any(fnmatch.fnmatchcase(name, pattern) if '*' in pattern
                               else pattern in name for pattern in patterns)


# Running them

class Capture(object):
    """Takes what the process writes, scripts as well as native code."""

    def __init__(self):
        self.files = [(descriptor, tempfile.TemporaryFile()) for descriptor in (1, 2)]
        self.saved = [os.dup(descriptor) for descriptor, _ in self.files]

    def begin(self):
        self._flush()
        for descriptor, file in self.files:
            os.ftruncate(file.fileno(), 0)
            os.lseek(file.fileno(), 0, os.SEEK_SET)
            os.dup2(file.fileno(), descriptor)

    def end(self):
        """Standard output and error since the begin."""
        self._flush()
        texts = []
        for (descriptor, file), saved in zip(self.files, self.saved):
            os.dup2(saved, descriptor)
            size = os.fstat(file.fileno()).st_size
            os.lseek(file.fileno(), 0, os.SEEK_SET)
            texts.append(os.read(file.fileno(), size).decode('utf-8', 'replace'))
        return texts

    @staticmethod
    def _flush():
        for stream in sys.stdout, sys.stderr, sys.__stdout__, sys.__stderr__:
            stream.flush()


class Record(object):
    """One test and what came of it: 'ok', 'failure', 'error' or 'skipped'."""

    def __init__(self, name):
        self.module, _, self.name = name.rpartition('.')
        self.outcome, self.kind, self.text = 'ok', '', ''
        self.out = self.err = ''
        self.seconds = 0.0

    def full_name(self):
        return '.'.join(filter(None, (self.module, self.name)))


class Result(unittest.TestResult):
    """Keeps a record of each test and tells a line of it."""

    def __init__(self, failfast):
        unittest.TestResult.__init__(self)
        self.failfast = failfast
        self.records = []
        self.capture = Capture()
        self.running = None

    def startTest(self, test):
        unittest.TestResult.startTest(self, test)
        self.running = Record(test.id())
        self.began = time.time()
        self.capture.begin()

    def stopTest(self, test):
        self.running.out, self.running.err = self.capture.end()
        self.running.seconds = time.time() - self.began
        self._finish(self.running)
        self.running = None
        unittest.TestResult.stopTest(self, test)

    def _finish(self, record):
        self.records.append(record)
        tell('%s ... %s' % (record.full_name(), record.outcome))
        if quilhost.is_ending():
            self.stop()

    def _note(self, test, outcome, kind, text):
        record = self.running or Record(test.id())  # a fixture of a class or module
        if record.outcome in ('ok', 'skipped'):
            record.outcome, record.kind = outcome, kind
        record.text += text
        if not self.running:
            self._finish(record)

    def addError(self, test, err):
        unittest.TestResult.addError(self, test, err)
        self._note(test, 'error', err[0].__name__, self._exc_info_to_string(err, test))

    def addFailure(self, test, err):
        unittest.TestResult.addFailure(self, test, err)
        self._note(test, 'failure', err[0].__name__, self._exc_info_to_string(err, test))

    def addSkip(self, test, reason):
        unittest.TestResult.addSkip(self, test, reason)
        self._note(test, 'skipped', '', reason)

    def addUnexpectedSuccess(self, test):
        unittest.TestResult.addUnexpectedSuccess(self, test)
        self._note(test, 'failure', 'UnexpectedSuccess', 'unexpected success')
        if self.failfast:
            self.stop()


def tell(line):
    sys.stderr.write('%s\n' % line)


def prepare_scene(name, usual):
    """Loads the module's SCENE, which is beside it, or else the usual one, if any."""
    from OpenQuil import ZFileIO
    module = sys.modules.get(name)
    scene = getattr(module, 'SCENE', None)
    if scene is not None:
        scene = os.path.join(os.path.dirname(os.path.abspath(module.__file__)), scene)
    if scene or usual:
        ZFileIO.open(scene or usual)
    else:
        ZFileIO.newScene()


class _Scene(unittest.TestCase):
    """Fails where a module's scene cannot be loaded."""

    def __init__(self, name, usual):
        unittest.TestCase.__init__(self)
        self.name, self.usual = name, usual

    def id(self):
        return self.name + '.SCENE'

    def runTest(self):
        prepare_scene(self.name, self.usual)


def run_module(name, tests, usual, result):
    try:
        prepare_scene(name, usual)
    except Exception:
        return _Scene(name, usual).run(result)  # again, as a test that tells
    unittest.TestSuite(tests).run(result)


def run(paths, patterns, failfast, junit, scene):
    """Runs the tests and returns the exit code, 0 or 1. `junit` and `scene` may be empty."""
    began = time.time()
    result = Result(failfast)
    for name, tests in groupby(load(paths, patterns), lambda test: type(test).__module__):
        if not result.shouldStop:
            run_module(name, list(tests), scene, result)
    report(result.records, time.time() - began)
    if junit:
        write_junit(junit, result.records)
    return int(not result.records or
               any(record.outcome in ('failure', 'error') for record in result.records))


def report(records, seconds):
    bad = [record for record in records if record.outcome in ('failure', 'error')]
    for record in bad:
        tell('\n%s\n%s: %s\n%s' % ('=' * 70, record.outcome.upper(), record.full_name(), '-' * 70))
        tell(record.text.rstrip())
        for name, text in ('output', record.out), ('error output', record.err):
            if text:
                tell((u'\nStandard %s:\n%s' % (name, text.rstrip())).encode('utf-8'))
    skipped = sum(record.outcome == 'skipped' for record in records)
    tell('\n%d tests in %.3f s: %s%s' % (
        len(records), seconds, '%d failed' % len(bad) if bad else 'OK' if records else 'none found',
        ', %d skipped' % skipped if skipped else ''))
