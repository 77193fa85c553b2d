# SPDX-License-Identifier: MIT
from typing import Any

class Proxy(object):
    this: Any
    thisown: bool
