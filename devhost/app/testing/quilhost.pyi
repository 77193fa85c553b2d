# SPDX-License-Identifier: MIT
"""What scripts can ask of the program quilhost."""
from typing import Dict, Text

def live_objects() -> Dict[str, int]:
    """The number of live host objects by class; counted with --leak-check only."""
def is_ending() -> bool:
    """True once the program was told to end."""
def render(file: Text, width: int = 0, height: int = 0) -> None:
    """Renders the scene with the registered render callbacks and writes it to a .png or .exr file."""
