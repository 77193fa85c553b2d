# SPDX-License-Identifier: MIT
"""What calls that run out of memory come to, and children in which they may crash."""
import os
import re
import signal
import sys
import traceback

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..'))
from children import leave_no_core_dump

os.dup2(os.open(os.devnull, os.O_WRONLY), 2)  # reports of callbacks, cut short


def outcome(call):
    """What a call came to, in a form that two calls can be compared by."""
    result, has_result, error, is_thrown, seen = call
    if is_thrown:
        return 'native exception'
    if error:
        return error.__name__ + ' with a result' * has_result
    if not has_result:
        return 'null without an exception'
    if result is None or isinstance(result, (int, long, float, basestring, tuple)):
        return re.sub('0x[0-9a-f]+', '0x', repr(result))
    return type(result).__name__


def in_child(work):
    """What `work` returns in a process of its own, which starts as this one is; None when that
    crashes or takes too long."""
    sys.stdout.flush()
    reading, writing = os.pipe()
    child = os.fork()
    if not child:
        status = 1
        try:
            leave_no_core_dump()
            signal.alarm(60)
            os.write(writing, repr(work()))
            status = 0
        except Exception:
            traceback.print_exc(None, sys.stdout)
        finally:
            sys.stdout.flush()
            os._exit(status)
    os.close(writing)
    with os.fdopen(reading) as answer:
        text = answer.read()
    return None if os.waitpid(child, 0)[1] else eval(text)
