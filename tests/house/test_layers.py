# SPDX-License-Identifier: MIT
"""One violation of the layers after another is planted, and has to be found."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / 'tools' / 'lint'))
from layers import tree, violations  # noqa: E402

# A file, a line to add to it (or the file goes), and what is to be found then.
PLANTED = [
    ('host/core/ZColor.h', '#include "host/render/ZRenderView.h"',
     'host/core/ZColor.h includes host/render/ZRenderView.h'),
    ('host/core/ZColor.h', '// devhost', 'host/core/ZColor.h speaks of devhost'),
    ('runtime/hex.h', '#include "host/core/ZColor.h"',
     'runtime/hex.h includes host/core/ZColor.h'),
    ('wrappers/render/layers.cpp', '  # include "devhost/scene/SceneGraph.h"',
     'wrappers/render/layers.cpp includes devhost/scene/SceneGraph.h'),
    ('devhost/gl/GlScope.h', '#include "host/render/ZRenderView.h"',
     'devhost/gl/GlScope.h includes host/render/ZRenderView.h'),
    ('devhost/image/ImageIo.h', '#include "devhost/api/render/Swatches.h"',
     'devhost/image/ImageIo.h includes devhost/api/render/Swatches.h'),
    ('devhost/raytrace/Sky.h', '#include "devhost/scene2/Sky.h"',
     'devhost/raytrace/Sky.h includes devhost/scene2/Sky.h'),
    ('devhost/sound/Sound.h', '', 'devhost/sound/Sound.h has no layer'),
    ('devhost/session/ViewportRequest.h', None,
     'devhost/session does not include host/render/ZRenderingInfo.h any more'),
    ('tests/companion/CMakeLists.txt', None, 'companion has no tests in tests/companion'),
    ('runtime/forgotten.cpp', '', 'runtime/forgotten.cpp is in no CMakeLists.txt'),
    ('notes.txt', '', 'notes.txt lies at the top'),
]

files = tree(str(ROOT))
before = set(violations(files))
for path, line, expected in PLANTED:
    planted = dict(files)
    planted[path] = planted.get(path, '') + '\n%s' % line
    if line is None:
        del planted[path]
    found = set(violations(planted)) - before
    assert expected in found, 'planted in %s: %s\nfound: %s' % (path, line, found)
