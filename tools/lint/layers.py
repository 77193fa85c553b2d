# SPDX-License-Identifier: MIT
"""The architecture as the folders have it: what each may include, where its tests are, and that
nothing lies about.

Usage: layers.py ROOT
"""
import os
import pathlib
import re
import subprocess
import sys

# A folder with C++ sources, what it may include beside itself (folders with all below them, or
# single files: exceptions, each with its reason), and the folder of its tests, if it has any.
LAYERS = {
    # What the host declares.
    'host/base': ('', 'tests/core'),
    'host/core': ('host/base', 'tests/core'),
    'host/render': ('host/base host/core', 'tests/render'),
    # The product: it knows declarations only.
    'runtime': ('host/base', 'tests/runtime'),
    'wrappers/rows': ('runtime host/base host/core', 'tests/wrappers'),
    'wrappers/render': ('wrappers/rows runtime host', 'tests/module'),
    'wrappers/hardware': ('wrappers/rows runtime host', 'tests/module'),
    'wrappers/shader_gl': ('wrappers/rows runtime host', 'tests/gl'),
    'module': ('wrappers/rows host/base', 'tests/module'),
    'companion': ('wrappers/rows runtime host/base/HostApi.h', 'tests/companion'),
    'companion/extensions/core': ('', 'tests/companion'),
    'companion/extensions/render': ('', 'tests/companion'),
    # The engines of the development host, lower ones first: values of host/core, no classes of
    # host/render.
    'devhost/util': ('host/base host/core', 'tests/core'),
    'devhost/scene': ('devhost/util host/base host/core'
                      ' devhost/image/ImageDecoder.h'   # pictures inside of scene files
                      ' devhost/image/TextureImage.h',  # whether a texture is there
                      'tests/scene'),
    'devhost/image': ('devhost/util devhost/scene host/base host/core', 'tests/core'),
    'devhost/geometry': ('devhost/scene devhost/util host/core'
                         ' host/render/ZGeometryData.h',  # enumerations: kinds and types
                         'tests/render'),
    'devhost/session': ('devhost/util devhost/scene devhost/image host/base host/core'
                        ' host/render/ZCommonRenderSettings.h'  # the settings record
                        ' host/render/ZRenderUtil.h'            # enumerations: state and pass
                        # It draws viewports, with renderers that are objects of plug-ins.
                        ' host/render/ZRenderingInfo.h devhost/gl/GlContext.h'
                        ' devhost/gl/GlTarget.h devhost/gl/HardwareRendering.h'
                        # It decides what renders a frame, and draws what renderers leave to it.
                        ' devhost/raytrace/CameraView.h devhost/raytrace/RayTracer.h'
                        ' devhost/raytrace/SamplePattern.h devhost/raytrace/Shading.h'
                        ' devhost/raytrace/SoftwareRenderer.h',
                        'tests/render'),
    'devhost/raytrace': ('devhost/util devhost/scene devhost/image devhost/geometry'
                         ' devhost/session host/base host/core'
                         ' host/render/ZRenderData.h'         # records that callbacks are given
                         ' host/render/ZRenderShadowData.h'
                         ' host/render/ZSwatchRenderBase.h',  # the material ball is a swatch
                         'tests/render'),
    'devhost/gl': ('devhost/util devhost/scene devhost/session host/base host/core'
                   ' devhost/image/Srgb.h'  # exposures add up as light
                   # The host's function table is the list of the driver's entry points.
                   ' host/render/ZGLFunctionTable.h host/render/gl_functions.def',
                   'tests/gl'),
    'devhost/process': ('devhost/util host/base', 'tests/across/lifetimes'),
    # The host's classes, on the engines.
    'devhost/api/base': ('devhost/process devhost/util host/base', 'tests/core'),
    'devhost/api/core': ('devhost/image devhost/scene devhost/util host/base host/core',
                         'tests/core'),
    'devhost/api/render': ('devhost/geometry devhost/gl devhost/image devhost/raytrace'
                           ' devhost/scene devhost/session devhost/util host', 'tests/render'),
    # What uses them.
    'devhost/core_module': ('devhost/api/render devhost/scene devhost/session wrappers/rows'
                            ' runtime host'
                            ' devhost/util/KnownMemory.h'  # lengths of what scripts make
                            ' devhost/util/GuardedMemory.h'
                            ' devhost/util/ViewedMemory.h',  # what sees it
                            'tests/core_module'),
    'devhost/app': ('devhost host'
                    ' runtime/pointer_object.h',  # counts objects by what modules return
                    'tests/app'),
    'devhost/farm': ('devhost/app/CommandLine.h devhost/app/Errors.h'  # quilhost's own reading
                     ' devhost/app/Progress.h'                         # and its log's last event
                     ' devhost/image/PictureFile.h devhost/image/TileAssembly.h'
                     ' devhost/session/Parallel.h devhost/session/PixelRegion.h devhost/util'
                     ' host/core',
                     'tests/farm'),
    'examples': ('host', 'tests/gl'),
    'examples/plugin': ('host devhost/app/PluginInterface.h', 'tests/setup'),
    'bench': ('host devhost/scene devhost/raytrace devhost/session tests/scene/gltf_file.h'
              ' tests/temporary_folder.h', ''),
    'tools/sanitizers': ('', ''),
}
# What lies at the top.
TOP = set('bench companion cmake devhost docs examples host module runtime tests tools wrappers'
          ' .ci .clang-format .clang-tidy .editorconfig .flake8 .gitignore ARCHITECTURE.md'
          ' CHANGELOG.md CMakeLists.txt CMakePresets.json CONTRIBUTING.md LICENSE Makefile'
          ' README.md'.split())
SOURCE = re.compile(r'\.(h|cpp|inc|def)$')
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def tree(root):
    """The texts of the tree's files by their paths; without git, of all but builds' and tools'."""
    git = subprocess.run(['git', '-C', root, 'ls-files', '-co', '--exclude-standard'],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, universal_newlines=True)
    paths = git.stdout.splitlines()
    if not paths:
        for folder, folders, names in os.walk(root):
            folders[:] = [name for name in folders
                          if not re.match(r'build|out$|__pycache__$|\.(?!ci$)', name)]
            paths += [os.path.relpath(os.path.join(folder, name), root) for name in names]
    files = {path: pathlib.Path(root, path) for path in sorted(paths)}
    return {path: file.read_text(encoding='utf-8', errors='replace')
            for path, file in files.items() if file.exists()}


def violations(files):
    lists = '\n'.join(text for path, text in files.items() if path.endswith('CMakeLists.txt'))
    compiled = set(re.findall(r'[\w.]+[.]cpp', lists))
    compiled.update(name + '.cpp' for name in re.findall(r'add_binding_module\((\w+)', lists))
    used = set()
    for path, text in files.items():
        folder, name = os.path.split(path)
        if path.split('/')[0] not in TOP:
            yield '%s lies at the top' % path
        if path.startswith('host/') and 'devhost' in text:
            yield '%s speaks of devhost' % path
        if name.endswith('.cpp') and name not in compiled:
            yield '%s is in no CMakeLists.txt' % path
        if path.startswith('tests/') or not SOURCE.search(name):
            continue
        if folder not in LAYERS:
            yield '%s has no layer' % path
            continue
        allowed = [folder] + LAYERS[folder][0].split()
        for include in INCLUDE.findall(text):
            found = [each for each in allowed if (include + '/').startswith(each + '/')]
            used.update((folder, each) for each in found)
            if not found:
                yield '%s includes %s' % (path, include)
    for folder, (allowed, tests) in LAYERS.items():
        for each in allowed.split():
            if SOURCE.search(each) and (folder, each) not in used:
                yield '%s does not include %s any more' % (folder, each)
        listed = 'add_subdirectory(%s)' % tests[len('tests/'):] in files['tests/CMakeLists.txt']
        if tests and not (listed and tests + '/CMakeLists.txt' in files):
            yield '%s has no tests in %s' % (folder, tests)


def main():
    found = list(violations(tree(sys.argv[1])))
    print('\n'.join(found))
    return bool(found)


if __name__ == '__main__':
    sys.exit(main())
