# SPDX-License-Identifier: MIT
"""Processes of their own for what a test lets crash or hang; for Python 2 and 3."""
import resource


def leave_no_core_dump():
    """Of this process and its children, when they crash."""
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
