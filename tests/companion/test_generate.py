"""Tests of the generator on a small made-up module. Run by Python 3: the generated proxies of this
module are valid in both languages."""

import ast
import inspect
import json
import pathlib
import subprocess
import sys
import tempfile
import types
import unittest

COMPANION = pathlib.Path(sys.argv.pop(1))

HEADER = r'''
#pragma once
/// A shape of paper, with """quotes""" and a \ in it.
class OPENQUIL_API ZShape : public ZShapeBase<int> {
  public:
    /// What it looks like.
    enum Look {
        /// All round.
        kRound = 0,
        kSquare, ///< Four corners.
        kHidden = -1
    };
    /// Makes a shape.
    ZShape() : side_(1) {}
    /// Makes a shape with sides.
    explicit ZShape(unsigned int sides, ZString const &name = ZString());
    /// Cuts along a line { not a brace; }.
    ZStatus cut(const ZPaper &from, bool const in = true, float depth = 0.5f);
    /// Folds once.
    static ZString fold(Look look, const ZPaper *paper = nullptr, ZStatus *ReturnStatus = nullptr);
    /// Adds an area.
    ZShape operator+(const ZShape &other) const { return ZShape(); }
    /// The number of sides.
    unsigned int sides = 3;
    /// The paper.
    ZPaper paper;
  private:
    int side_;
};
'''
BASE_HEADER = '''
/// A sheet.
class ZPaper {};
/// A shape with points.
class ZStar : public ZShape {};
/// What shapes have in common.
template <class T>
class ZShapeBase {
  public:
    /// The area in square units.
    virtual double area(unsigned precision) const { if (true) { return 0; } return 1; }
};
'''


def row(name, kind, class_name, member='', *cases):
    cases = cases or [('', 0, 0, [])]
    return {'name': name, 'kind': kind, 'class': class_name, 'member': member, 'flags': 1,
            'overloads': [dict(zip(('declaration', 'min', 'max', 'defaults'), case))
                          for case in cases]}


def protocol(name):
    return [row(name + '_swigregister', 'register', name),
            row(name + '_swiginit', 'initialise', name)]


SHAPES = {
    'functions': [
        row('new_ZShape', 'constructor', 'ZShape', '',
            ('ZShape()', 0, 0, []), ('ZShape(unsigned int, ZString const &)', 1, 2, [0])),
        row('delete_ZShape', 'destructor', 'ZShape', '', ('void(ZShape *)', 1, 1, [])),
        row('ZShape_cut', 'method', 'ZShape', 'cut',
            ('ZStatus(ZPaper const &, bool const, float)', 3, 4, [0])),
        row('ZShape_fold', 'static', 'ZShape', 'fold',
            ('ZString(ZShape::Look, ZPaper const *, ZStatus *)', 1, 2, [0])),
        row('ZShape_area', 'method', 'ZShape', 'area', ('double(unsigned int) const', 2, 2, [])),
        row('ZShape___add__', 'method', 'ZShape', '__add__',
            ('ZShape(ZShape const &) const', 2, 2, [])),
        row('ZShape___eq__', 'method', 'ZShape', '__eq__', ('bool(PyObject *) const', 2, 2, [])),
        row('ZShape_sides_set', 'setter', 'ZShape', 'sides', ('void(unsigned int)', 2, 2, [])),
        row('ZShape_sides_get', 'getter', 'ZShape', 'sides', ('unsigned int()', 1, 1, [])),
        row('ZShape_paper_get', 'getter', 'ZShape', 'paper', ('ZPaper *()', 1, 1, [])),
        *protocol('ZShape'),
        row('ZStar_swigregister', 'register', 'ZStar'),
        *protocol('ZPaper'),
        row('ZPaper_ink', 'method', 'ZPaper', 'ink', ('unsigned char *()', 1, 1, [])),
        row('UnsignedCharBuffer_swigregister', 'register', 'UnsignedCharBuffer'),
        row('new_ZPaper', 'constructor', 'ZPaper', '', ('ZPaper()', 0, 0, [])),
    ],
    'constants': [{'name': 'ZShape_kRound', 'value': 0}, {'name': 'ZShape_kSquare', 'value': 1},
                  {'name': 'kLoose', 'value': 7}],
    'types': [{'mangled': '_p_ZStar', 'readable': 'ZStar *', 'bases': ['_p_ZShape', '_p_ZOther']},
              {'mangled': '_p_ZShape', 'readable': 'ZShape *', 'bases': []},
              {'mangled': '_p_ZPaper', 'readable': 'ZPaper *', 'bases': []},
              {'mangled': '_p_unsigned_char', 'readable': 'unsigned char *', 'bases': []}],
}


class Native(types.ModuleType):
    """Stands for the native module: answers every function by telling how it was called."""

    def __init__(self):
        super().__init__('_Shapes')
        self.registered = []
        for constant in SHAPES['constants']:
            setattr(self, constant['name'], constant['value'])

    def __getattr__(self, name):
        if name.endswith('_swigregister'):
            return self.registered.append
        return lambda *arguments: (name,) + arguments


class GenerateTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            (folder / 'shapes.json').write_text(json.dumps(SHAPES))
            (folder / 'host').mkdir()
            (folder / 'host' / 'ZShape.h').write_text(HEADER)
            (folder / 'host' / 'ZShapeBase.h').write_text(BASE_HEADER)
            (folder / 'extensions').mkdir()
            (folder / 'extensions' / 'members.h').write_text(
                '/// Bytes.\nclass UnsignedCharBuffer {};\n'
                'class ZPaper {\n  /// What is written.\n  unsigned char *ink();\n};\n')
            (folder / 'extensions' / 'ZShape.py').write_text(
                '@staticmethod\ndef fold(look):\n    """Folded by hand."""\n    return look\n')
            subprocess.run([sys.executable, str(COMPANION / 'generate.py'),
                            '--module', 'Shapes=%s' % (folder / 'shapes.json'),
                            '--headers', str(folder / 'host'),
                            '--extensions', str(folder / 'extensions'),
                            '--output', str(folder)], check=True)
            source = (folder / 'Shapes.py').read_text()
            cls.stub = (folder / 'Shapes.pyi').read_text()
        cls.native = sys.modules['_Shapes'] = Native()
        sys.path.insert(0, str(COMPANION))
        cls.shapes = types.ModuleType('Shapes')
        exec(source, cls.shapes.__dict__)

    def stub_of(self, name):
        classes = {node.name: node for node in ast.parse(self.stub).body
                   if isinstance(node, ast.ClassDef)}
        return ast.unparse(classes[name])

    def test_classes_are_registered_bases_first(self):
        self.assertEqual(['ZShape', 'ZPaper', 'UnsignedCharBuffer', 'ZStar'],
                         [c.__name__ for c in self.native.registered])
        self.assertEqual((self.shapes.ZShape,), self.shapes.ZStar.__bases__)
        self.assertIn('class ZStar(ZShape):', self.stub)

    def test_constants_and_class_documentation(self):
        self.assertEqual((0, 1), (self.shapes.ZShape.kRound, self.shapes.ZShape.kSquare))
        self.assertEqual(7, self.shapes.kLoose)
        text = self.shapes.ZShape.__doc__
        self.assertTrue(text.startswith('A shape of paper, with """quotes""" and a \\ in it.'))
        self.assertIn('kRound: All round.', text)
        self.assertIn('kSquare: Four corners.', text)
        self.assertNotIn('kHidden', text)

    def test_arguments_are_passed_with_defaults(self):
        shape = self.shapes.ZShape.__new__(self.shapes.ZShape)
        paper = object()
        self.assertEqual(('ZShape_cut', shape, paper, True, 0.0), shape.cut(paper, True))
        self.assertEqual(('ZShape_cut', shape, paper, False, 2), shape.cut(paper, False, depth=2))
        self.assertEqual(('ZShape___add__', shape, shape), shape + shape)

    def test_signatures(self):
        shape = self.shapes.ZShape
        self.assertEqual(['self', 'from_', 'in_', 'depth'], list(
            inspect.signature(shape.cut).parameters))
        self.assertTrue(inspect.getdoc(shape.cut).startswith(
            'cut(from_: ZPaper, in_: bool, depth: float = 0.0) -> None\n\nCuts along a line'))
        self.assertEqual('area(precision: int) -> float\n\nThe area in square units.',
                         inspect.getdoc(shape.area))
        self.assertEqual('ZShape()\nZShape(sides: int, name: unicode = \'\')\n\nMakes a shape.\n\n'
                         'Makes a shape with sides.', inspect.getdoc(shape.__init__))
        self.assertEqual('__add__(other: ZShape) -> ZShape\n\nAdds an area.',
                         inspect.getdoc(shape.__add__))

    def test_data_members(self):
        self.assertEqual('sides: int\n\nThe number of sides.',
                         inspect.getdoc(self.shapes.ZShape.sides))
        with self.assertRaises(AttributeError):
            self.shapes.ZShape.__new__(self.shapes.ZShape).paper = None

    def test_members_of_scripts_only_and_native_buffers(self):
        self.assertEqual('ink() -> Optional[UnsignedCharBuffer]\n\nWhat is written.',
                         inspect.getdoc(self.shapes.ZPaper.ink))

    def test_concluded_special_methods(self):
        self.assertIsNone(self.shapes.ZShape.__hash__)
        shape = self.shapes.ZShape.__new__(self.shapes.ZShape)
        self.assertFalse(shape != shape)  # the stand-in's __eq__ is always true

    def test_extension_replaces_a_function_and_adds_to_its_documentation(self):
        self.assertEqual(5, self.shapes.ZShape.fold(5))
        self.assertEqual("fold(look: Look, paper: Optional[ZPaper] = None) -> unicode\n\n"
                         "Folds once.\n\nFolded by hand.", inspect.getdoc(self.shapes.ZShape.fold))

    def test_stub(self):
        stub = self.stub_of('ZShape')
        for line in ('kRound: int', 'def __init__(self) -> None:',
                     "def __init__(self, sides: int, name: Text='') -> None:",
                     'def cut(self, from_: ZPaper, in_: bool, depth: float=0.0) -> None:',
                     'def fold(look: int, paper: Optional[ZPaper]=None) -> Text:',
                     'def area(self, precision: int) -> float:',
                     'def __eq__(self, other: Any) -> bool:',
                     'def sides(self, value: int) -> None:', 'def paper(self) -> ZPaper:'):
            self.assertIn(line, stub)
        self.assertEqual(2, stub.count('@overload'))
        self.assertNotIn('paper.setter', stub)


if __name__ == '__main__':
    unittest.main()
