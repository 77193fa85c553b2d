# SPDX-License-Identifier: MIT
"""Compares the stubs with the proxies and with the native tables. Run by Python 3 with the folder
of the companion layer and NAME=DESCRIPTION for every module."""

import ast
import json
import pathlib
import sys
import unittest

FOLDER = pathlib.Path(sys.argv.pop(1))
DESCRIPTIONS = dict(argument.split('=', 1) for argument in sys.argv[1:])
del sys.argv[1:]

# What stands in a class: names and defaults of parameters, overloads, enumerations as numbers,
# texts, objects and buffers, constants, data members.
LINES = {
    'OpenQuil.ZQuaternion': ['def __init__(self, from_: ZVector, to: ZVector) -> None:',
                             'def __init__(self, items: Iterable[Any]) -> None:',
                             'def getAxisAngle(self, axis: ZVector, angle: DoubleBuffer) -> bool:',
                             'def x(self, value: float) -> None:'],
    'OpenQuilRender.RV_AOV': ['def name(self) -> OpenQuil.ZString:',
                              'def name(self, value: Union[OpenQuil.ZString, Text]) -> None:',
                              'def pPixels(self) -> Optional[OpenQuil.FloatBuffer]:'],
    'OpenQuilRender.ZRenderView': [
        'def updatePixels(left: int, right: int, bottom: int, top: int, '
        'pPixels: Union[RV_PIXEL, OpenQuil.PixelBuffer, None], isHdr: bool=False, '
        'numberOfAOVs: int=0, pAOVs: Union[RV_AOV, OpenQuil.LayerBuffer, None]=None) -> None:',
        'def className() -> str:'],
    'OpenQuilRender.ZRenderShadowData': ['kSpot: int', 'def lightType(self, value: int) -> None:',
                                         'def internalData(self) -> Any:',
                                         'def depthMaps(self) -> OpenQuil.FloatBuffer:',
                                         'def midDistMaps(self) -> '
                                         'Optional[OpenQuil.FloatBuffer]:'],
    'OpenQuilRender.ZHardwareRenderer': ['def theRenderer() -> ZHardwareRenderer:'],
}


def classes_of(path):
    """The members of each class in a module, by name; overloads make lists."""
    result = {}
    for node in ast.parse(path.read_text(encoding='utf-8')).body:
        if isinstance(node, ast.ClassDef):
            members = result[node.name] = {}
            for item in node.body:
                if isinstance(item, ast.FunctionDef):
                    members.setdefault(item.name, []).append(item)
                elif isinstance(item, ast.AnnAssign):
                    members.setdefault(item.target.id, []).append(item)
                elif isinstance(item, ast.Assign):
                    for target in item.targets:
                        members.setdefault(target.id, []).append(item)
    return result


class StubTest(unittest.TestCase):
    def each_module(self):
        for name, description in DESCRIPTIONS.items():
            data = json.loads(pathlib.Path(description).read_text())
            self.assertGreater(len(data['functions']), 100)
            yield data, classes_of(FOLDER / (name + '.py')), classes_of(FOLDER / (name + '.pyi'))

    def test_stubs_and_proxies_name_the_same_members(self):
        for _, proxies, stubs in self.each_module():
            self.assertEqual(sorted(proxies), sorted(stubs))
            for name, members in proxies.items():
                # What every proxy class has, or inherits, is not told again.
                expected = {member for member in members
                            if not member.startswith('_') or member == '__disown__' or
                            member.endswith('__') and member in stubs[name]}
                self.assertEqual(expected, set(stubs[name]), name)

    def test_types_and_names(self):
        for full_name, lines in LINES.items():
            module, name = full_name.split('.')
            tree = ast.parse((FOLDER / (module + '.pyi')).read_text())
            stub, = [ast.unparse(node) for node in tree.body if getattr(node, 'name', '') == name]
            for line in lines:
                self.assertIn('    ' + line, stub.split('\n'))

    def test_defaults(self):
        table = pathlib.Path(__file__).with_name('defaults.tsv').read_text().splitlines()[1:]
        description = pathlib.Path(DESCRIPTIONS['OpenQuilRender']).read_text()
        functions = json.loads(description)['functions']
        self.assertEqual(table, [
            '%s\t%s' % (f['name'], '; '.join(' '.join(map(str, o['defaults']))
                                             for o in f['overloads'] if o['defaults']))
            for f in functions if any(o['min'] < o['max'] for o in f['overloads'])])


if __name__ == '__main__':
    unittest.main()
