# SPDX-License-Identifier: MIT
"""The pictures of the site, which the examples and the guides' own programs make."""
import os
import shutil
import subprocess
import tempfile

import guides
from guides import ROOT

# The examples with their pictures: how these are rendered.
BUNNY = '/usr/share/glmark2/models/bunny.obj'
EXAMPLES = {
    'raytrace.py': BUNNY + ' --output {picture}',
    'depth_fog.py': BUNNY + ' --output {picture}',
    'layers.py': 'examples/scenes/layers.gltf --layer hero --output {picture}',
    'swatch_sheet.py': 'examples/scenes/materials.obj -- {picture} 160',
    'read_geometry.py': None,
    'hardware_frame.py': BUNNY + ' --renderer hardware --output {picture}',
    'gl_scene.py': None,
    'gl_mesh.py': BUNNY + ' -- {picture} examples/scenes/tile_pattern.png',
    'gl_program.py': BUNNY + ' -- {picture}',
}


def render_pictures(build, folder):
    """The pictures of the examples and of the guides."""
    folder.mkdir(parents=True, exist_ok=True)
    environment = dict(os.environ, LIBGL_ALWAYS_SOFTWARE='1')
    for name, arguments in EXAMPLES.items():
        if arguments:
            picture = folder / (name[:-3] + '.png')
            subprocess.run([str(build / 'bin/quilhost'), '--quiet', '--python', 'examples/' + name,
                            '--resolution', '640', '400',
                            *arguments.format(picture=picture).split()],
                           cwd=ROOT, env=environment, check=True, stdout=subprocess.DEVNULL)
    for page in sorted((ROOT / 'docs').glob('*.md')):
        wanted = guides.PICTURE.findall(page.read_text(encoding='utf-8'))
        if wanted:
            with tempfile.TemporaryDirectory() as work:
                faults = guides.run(page, work, build / 'bin')
                if faults:
                    raise SystemExit('docs: %s: %s' % (page.name, '\n'.join(faults)))
                for name, _ in wanted:
                    shutil.copy(os.path.join(work, name), folder)
