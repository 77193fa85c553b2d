# SPDX-License-Identifier: MIT
"""Calls that are judged, and the process that they are made in."""
import ctypes
import os
import resource
import subprocess
import sys
import tempfile

from rows import NO_OVERLOAD, NULL_HOST, PROGRAM, goes_on, module

import children

SCENE = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, os.pardir,
                     'examples', 'scenes', 'layers.gltf')
CALLBACK_FAILED = 4  # the program's exit status; odd objects make odd callbacks
CPU_SECONDS = 1200  # a call that hangs ends by a signal
NOTHING = object()
raise_pending = ctypes.pythonapi.PyErr_Occurred  # which raises what it finds


def attempt(function, arguments):
    """The result, or NOTHING, and the exception: both where text could not be read."""
    result = NOTHING
    try:
        result = function(*arguments)
        raise_pending()
    except BaseException as error:
        return result, error
    return result, None


def leave():
    """Ends a render that a call may have begun: the program does not end well with an open one."""
    attempt(module.ZRenderView_endRender, ())


class Journal(object):
    """The last calls, in a file that outlives a crash."""
    SLOTS, WIDTH = 40, 500

    def __init__(self, path):
        self.file = open(path, 'wb', 0)
        self.count = 0

    def write(self, text):
        self.file.seek(self.count % self.SLOTS * self.WIDTH)
        line = '%d: %s' % (self.count, text)
        self.file.write(line[:self.WIDTH - 1].ljust(self.WIDTH - 1) + '\n')
        self.count += 1

    @staticmethod
    def tail(path, count=12):
        with open(path, 'rb') as lines:
            return sorted(lines, key=lambda line: int(line.split(':')[0]))[-count:]


def judge(row, expected, result, error):
    """What is wrong with the outcome of a call, or None. `expected` are the possible complaints;
    None among them stands for success, after which a real host may still refuse."""
    if row.is_protocol:
        is_null = row.name == 'SWIG_PyInstanceMethod_New'
        return None if (type(error) is SystemError) == is_null else 'null without an exception'
    if error is None:
        return None if None in expected else 'should have failed: %r' % expected
    if row.name == 'ZGeometryList_addLast' and str(error).startswith(NO_OVERLOAD % row.name):
        return None  # the one dispatcher that probes where only one case takes so many arguments
    said = type(error), str(error)
    if said in expected:
        if result is NOTHING or goes_on(said):
            return None
        return '%r, and the result is %r' % (said, result)
    refused = type(error) is RuntimeError and result is NOTHING and not row.null_host
    if refused and any(e is None or goes_on(e) for e in expected):
        return None
    return '%r raised instead of %r; result %r' % (said, expected, result)


def limit_child():
    children.leave_no_core_dump()
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))


def supervise(script, arguments, null_host):
    """Runs a script in a process of its own, with a journal; when it crashes or hangs, shows its
    last calls. Returns the exit status."""
    handle, journal = tempfile.mkstemp()
    os.close(handle)
    environment = dict(os.environ, PYTHONDONTWRITEBYTECODE='1')
    if null_host:
        environment['LD_PRELOAD'] = NULL_HOST
        # An instrumented program would rather be the first to be loaded.
        environment['ASAN_OPTIONS'] = environment.get('ASAN_OPTIONS', '') + (
            ':verify_asan_link_order=0')
    try:
        status = subprocess.call(
            [PROGRAM, '--no-gl', '--quiet', '--resolution', '8', '6', SCENE, '--python', script,
             '--', '--journal', journal] + arguments, env=environment, preexec_fn=limit_child)
        if status in (0, CALLBACK_FAILED):
            return 0
        sys.stderr.write('status %d; the last calls:\n%s\n' % (
            status, ''.join(Journal.tail(journal))))
        return 1
    finally:
        os.remove(journal)
