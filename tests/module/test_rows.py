"""The functions of the render families, each against the table of declared types in rows.tsv:
presence, calling flag, argument counts, and the exact complaint about each argument."""
import unittest

import harness
from harness import module, NOARGS, O, VARARGS

CLASSES = ('RV_AOV', 'RV_PIXEL', 'ZGLFunctionTable', 'ZCommonRenderSettingsData', 'ZD3D9Renderer',
           'ZDrawProcedureBase', 'ZFnImageSource', 'ZFnRenderLayer', 'ZFnRenderPass',
           'ZLightLinks', 'ZGeometry', 'ZGeometryData', 'ZGeometryList', 'ZGeometryManager',
           'ZGeometryPrimitive', 'ZGeometryRequirements', 'ZHardwareRenderer', 'ZHwTextureManager',
           'ZHwrCallback', 'ZRenderCallback', 'ZRenderData', 'ZRenderProfile', 'ZRenderShadowData',
           'ZRenderTarget', 'ZRenderUtil', 'ZRenderView', 'ZRenderingInfo', 'ZSwatchRenderBase',
           'ZSwatchRenderRegister', 'ZUniformParameter', 'ZUniformParameterList',
           'ZVaryingParameter', 'ZVaryingParameterList', 'ZViewportRenderer')

CONSTANTS = {
    'ZCommonRenderSettingsData_kRelativePath': 0, 'ZCommonRenderSettingsData_kFullPathImage': 1,
    'ZCommonRenderSettingsData_kFullPathTmp': 2,
    'ZRenderShadowData_kInvalid': 0, 'ZRenderShadowData_kPoint': 1,
    'ZRenderShadowData_kDirectional': 2, 'ZRenderShadowData_kSpot': 3,
    'ZRenderUtil_kNotRendering': 0, 'ZRenderUtil_kBatchRender': 1,
    'ZRenderUtil_kInteractiveRender': 2, 'ZRenderUtil_kIprRender': 3,
    'ZRenderUtil_kHardwareRender': 4, 'ZRenderUtil_kAll': 0, 'ZRenderUtil_kColorOnly': 1,
    'ZRenderUtil_kShadowOnly': 2, 'ZRenderUtil_kAmbientOnly': 3, 'ZRenderUtil_kDiffuseOnly': 4,
    'ZRenderUtil_kSpecularOnly': 5}
UNIFORM_TYPES = '''
    Unknown Bool Int Float 1DTexture 2DTexture 3DTexture CubeTexture EnvTexture String Enum'''.split()
UNIFORM_SEMANTICS = '''
    Unknown ObjectDir WorldDir ViewDir ProjectionDir ObjectPos WorldPos ViewPos ProjectionPos
    Color Normal Bump Environment WorldMatrix WorldInverseMatrix WorldInverseTransposeMatrix
    ViewMatrix ViewInverseMatrix ViewInverseTransposeMatrix ProjectionMatrix
    ProjectionInverseMatrix ProjectionInverseTransposeMatrix WorldViewMatrix
    WorldViewInverseMatrix WorldViewInverseTransposeMatrix WorldViewProjectionMatrix
    WorldViewProjectionInverseMatrix WorldViewProjectionInverseTransposeMatrix ColorTexture
    NormalTexture BumpTexture NormalizationTexture TranspDepthTexture OpaqueDepthTexture Time
    WorldTransposeMatrix ViewTransposeMatrix ProjectionTransposeMatrix WorldViewTransposeMatrix
    WorldViewProjectionTransposeMatrix ViewProjectionMatrix ViewProjectionInverseMatrix
    ViewProjectionTransposeMatrix ViewProjectionInverseTransposeMatrix LocalViewer
    ViewportPixelSize BackgroundColor FrameNumber'''.split()
CONSTANTS.update(('ZUniformParameter_kType' + n, i) for i, n in enumerate(UNIFORM_TYPES))
CONSTANTS.update(('ZUniformParameter_kSemantic' + n, i) for i, n in enumerate(UNIFORM_SEMANTICS))
CONSTANTS.update(('ZVaryingParameter_k' + n, i - 1) for i, n in enumerate(
    'InvalidParameter Structure Float Double Char UnsignedChar Int16 UnsignedInt16 Int32 '
    'UnsignedInt32'.split()))
CONSTANTS.update(('ZVaryingParameter_k' + n, i) for n, i in (
    ('NoSemantic', 0), ('Position', 1), ('Normal', 2), ('TexCoord', 3), ('Color', 4),
    ('Weight', 5), ('Tangent', 7), ('Binormal', 8)))


def add_constants(class_name, first, names):
    CONSTANTS.update((class_name + '_' + name, first + i) for i, name in enumerate(names.split()))


add_constants('ZGeometryData', 0, 'kInvalidElementSize kOne kTwo kThree kFour')
add_constants('ZGeometryData', -1, 'kInvalidElementType kFloat kDouble kChar kUnsignedChar kInt16 '
              'kUnsignedInt16 kInt32 kUnsignedInt32')
add_constants('ZGeometryData', 0, 'kInvalidDataType kPosition kNormal kTexCoord kColor kWeight '
              'kAPISupported kTangent kBiNormal kVelocity kPrimitiveCenter kColorMask kUserData '
              'kMaxDataTypeIndex')
add_constants('ZGeometryList', 0, 'kNone kMatrices kFixedFunctionLighting')
CONSTANTS.update(ZGeometryList_kCulling=4, ZGeometryList_kAll=-1)
add_constants('ZGeometryList', 0, 'kCullNone kCullCW kCullCCW')
add_constants('ZGeometryManager', 0, 'kDefaultSphere kDefaultPlane kDefaultCube')
add_constants('ZGeometryPrimitive', 0, 'kInvalidIndexType kPoints kLines kLineStrip kLineLoop '
              'kTriangles kTriangleStrip kTriangleFan kQuads kQuadStrip kPolygon '
              'kMaxDrawPrimitiveTypeIndex')
add_constants('ZHardwareRenderer', 0, 'kSuccess kFailure kItemExists kItemNotFound '
              'kLocationNotFound')
add_constants('ZHardwareRenderer', 0, 'kRGBA_Fix8 kRGBA_Float16 kDepth_Float32')
add_constants('ZHardwareRenderer', 0, 'kPreRendering kPreExposure kPostExposure kPostRendering')
add_constants('ZHardwareRenderer', 0, 'kDefaultSphere kDefaultPlane kDefaultCube')

add_constants('ZRenderProfile', 0, 'kQuilSoftware kQuilOpenGL kQuilD3D')
add_constants('ZViewportRenderer', 0, 'kOpenGL kDirect3D kSoftware')
add_constants('ZViewportRenderer', 0, 'kNoOverride kOverrideAllDrawing kOverrideThenStandard '
              'kOverrideThenUI')
EXCLUSIONS = '''
    NurbsCurves NurbsSurfaces Meshes Planes Lights Cameras Joints IkHandles Deformers Dynamics
    ParticleInstancers Locators Dimensions SelectHandles Pivots Textures Grid CVs Hulls Strokes
    SubdivSurfaces Fluids Follicles HairSystems ImagePlane NCloths NRigids DynamicConstraints
    Manipulators NParticles MotionTrails'''.split()
CONSTANTS.update(('ZViewportRenderer_kExclude' + n, 2 ** i) for i, n in enumerate(EXCLUSIONS))
CONSTANTS.update(ZViewportRenderer_kExcludeNone=0, ZViewportRenderer_kExcludeAll=-1,
                 ZViewportRenderer_kExcludePluginShapes=-2147483648)
add_constants('ZGLFunctionTable', 0, 'kZGL_Version11 kZGL_Version12 kZGL_Version121 '
              'kZGL_Version13 kZGL_Version14 kZGL_Version15 kZGL_Version20')


class Odd(object):
    def __nonzero__(self):
        raise KeyError('no truth value')


# Declared type: an argument that passes, and those that do not with what is raised.
NUMBERS = {
    'int': (1, [(object(), TypeError), (2 ** 31, OverflowError), (1.0, TypeError)]),
    'unsigned int': (1, [(object(), TypeError), (2 ** 32, OverflowError), (-1, OverflowError)]),
    'unsigned short': (1, [(object(), TypeError), (65536, OverflowError), (-1, OverflowError),
                           (2 ** 70, TypeError)]),
    'short': (1, [(object(), TypeError), (32768, OverflowError), (-32769, OverflowError),
                  (1.0, TypeError)]),
    'float': (1, [(object(), TypeError), (1e39, OverflowError)]),
    'double': (1, [(object(), TypeError), (10 ** 400, TypeError)]),
    'bool': (0, [(Odd(), TypeError)]),
}
NUMBERS['bool const &'] = NUMBERS['bool']
NUMBERS['ZHwTextureFileHandle'] = NUMBERS['int']
NUMBERS['short'] = (1, [(object(), TypeError), (2 ** 15, OverflowError), (1.0, TypeError)])
NUMBERS['unsigned char'] = (1, [(object(), TypeError), (256, OverflowError), (-1, OverflowError)])
NUMBERS['signed char'] = (1, [(object(), TypeError), (128, OverflowError), (-129, OverflowError)])
NUMBERS['long'] = (1, [(object(), TypeError), (2 ** 63, OverflowError), (1.0, TypeError)])
GL_TYPES = {
    'ZGLenum': 'unsigned int', 'ZGLuint': 'unsigned int', 'ZGLbitfield': 'unsigned int',
    'ZGLhandleARB': 'unsigned int', 'ZGLint': 'int', 'ZGLsizei': 'int', 'ZGLExtension': 'int',
    'ZGLsizeiptrARB': 'long', 'ZGLintptrARB': 'long', 'ZGLfloat': 'float', 'ZGLclampf': 'float',
    'ZGLdouble': 'double', 'ZGLclampd': 'double', 'ZGLshort': 'short',
    'ZGLushort': 'unsigned short', 'ZGLubyte': 'unsigned char', 'ZGLboolean': 'unsigned char',
    'ZGLbyte': 'signed char', 'ZGLcharARB': 'char'}
NUMBERS.update((gl, NUMBERS[native]) for gl, native in GL_TYPES.items() if native in NUMBERS)
# Addresses of addresses have one pointer type each, whatever is const in them.
ADDRESSES = {'ZGLvoid **': 'p_void', 'ZGLvoid const **': 'p_void', 'void **': 'p_void',
             'ZGLcharARB const **': 'p_char', 'char const **': 'p_char'}
GL_DATA = ('ZGLvoid *', 'ZGLvoid const *')  # these have a message of their own; see test_gl.py
ENUMERATIONS = ('ZHardwareRenderer::CallLocation', 'ZHardwareRenderer::GeometricShape',
                'ZGeometryData::DataType', 'ZGeometryManager::GeometricShape',
                'ZCommonRenderSettingsData::ZpathType', 'ZRenderShadowData::LightType',
                'ZVaryingParameter::ZVaryingParameterSemantic', 'ZViewportRenderer::RenderingAPI',
                'ZViewportRenderer::RenderingOverride')
STRINGS = ('ZString', 'ZString &', 'ZString const &', 'list')
FUNCTION_POINTERS = {'ZSwatchRenderCreatorFnPtr': 'f_ZObject_ZObject_int__p_ZSwatchRenderBase'}
TARGETS = {'void const *&': 'p_void', 'unsigned int *&': 'p_unsigned int',
           'ZHardwareRenderer::BufferPixelFormat &': 'ZHardwareRenderer__BufferPixelFormat',
           'ZHwTextureFileHandle &': 'int'}
ANYTHING = ('PyObject', 'void *', 'void const *')


def pointee(declared):
    """The type that an argument points to, by the name of its record."""
    special = ADDRESSES.get(declared) or FUNCTION_POINTERS.get(declared) or TARGETS.get(declared)
    if special:
        return special
    bare = declared.replace('const', '').rstrip('&* ').strip()
    return GL_TYPES.get(bare, bare)


def expectations(declared, is_object_member):
    """An argument that passes, and the failures: argument, exception, is a null reference."""
    if declared in ENUMERATIONS:
        declared = 'int'
    if declared in NUMBERS:
        good, bad = NUMBERS[declared]
        return good, [(value, error, False) for value, error in bad]
    if declared in STRINGS:
        return 'text', []  # these go on; see test_values.py
    if declared in ANYTHING or declared in GL_DATA:
        return None, []
    if declared == 'ZGLcharARB const *':
        return 'text', [(bad, TypeError, False) for bad in (object(), u'text', ['text'])]
    if declared in ADDRESSES:
        return harness.placeholder(pointee(declared)), [
            (bad, TypeError, False) for bad in (object(), ['text'], harness.placeholder('void'))]
    if declared in FUNCTION_POINTERS:
        return harness.placeholder(pointee(declared)), [
            (bad, TypeError, False) for bad in (object(), harness.placeholder('ZImage'))]
    bare = pointee(declared)
    good, bad = harness.placeholder(bare), [(object(), TypeError, False)]
    unrelated = harness.placeholder('ZStatus' if bare == 'ZImage' else 'ZImage')
    bad.append((unrelated, TypeError, False))
    if '*' not in declared or declared.endswith('*&') or is_object_member:
        bad.append((None, ValueError, True))
    return good, bad


class RowTest(unittest.TestCase):
    def assert_raises(self, error, text, function, arguments):
        try:
            function(*arguments)
        except Exception as caught:
            self.assertEqual((type(caught), str(caught)), (error, text))
        else:
            self.fail('nothing raised: ' + text)

    def test_rows_are_those_of_the_table(self):
        declared = dict((row[0], row[1]) for row in harness.rows())
        prefixes = tuple(p + c for c in CLASSES for p in ('new_', 'delete_', 'disown_')) + tuple(
            c + '_' for c in CLASSES)
        found = dict((name, harness.definition(value).flags) for name, value in vars(module).items()
                     if name.startswith(prefixes) and callable(value))
        self.assertEqual(found, declared)

    def test_totals(self):
        rows = [harness.definition(value).flags for value in vars(module).values()
                if type(value) is type(len)]
        constants = [value for value in vars(module).values() if type(value) is int]
        self.assertEqual((rows.count(VARARGS), rows.count(NOARGS), rows.count(O)), (1000, 41, 247))
        self.assertEqual((len(rows), len(constants)), (1288, 1967))

    def test_constants(self):
        prefixes = tuple(c + '_' for c in CLASSES)
        found = dict((n, v) for n, v in vars(module).items()
                     if n.startswith(prefixes) and not callable(v))
        self.assertEqual(found, CONSTANTS)
        self.assertEqual(set(map(type, found.values())), {int})

    def test_no_documentation(self):
        for name, _, _, _, _ in harness.rows():
            self.assertIsNone(harness.definition(getattr(module, name)).doc, name)

    def test_argument_counts(self):
        for name, flag, least, most, types in harness.rows():
            function = getattr(module, name)
            if types == ['overloaded']:
                continue
            self.assertEqual(most, len(types), name)
            if flag == NOARGS:
                text = name + '() takes no arguments (1 given)'
                self.assert_raises(TypeError, text, function, [None])
                continue
            if flag == O:
                for count in (0, 2):
                    text = '%s() takes exactly one argument (%d given)' % (name, count)
                    self.assert_raises(TypeError, text, function, [None] * count)
                continue
            own = name.rsplit('_', 1)[1] if name.endswith(('swigregister', 'swiginit')) else name
            form = '%s expected %s%d arguments, got %d'
            for count, bound, word in ((least - 1, least, 'at least '), (most + 1, most, 'at most ')):
                text = form % (own, '' if least == most else word, bound, count)
                self.assert_raises(TypeError, text, function, [None] * count)

    def test_each_argument_is_told_by_position_and_type(self):
        checked = 0
        for name, flag, least, most, types in harness.rows():
            if types == ['overloaded']:
                continue
            is_setter = name.endswith('_set')
            cases = [expectations(declared, is_setter and i == 1 and declared in (
                'ZString *', 'ZTime *', 'ZFloatVector *', 'ZFloatPoint *', 'ZFloatMatrix *'))
                     for i, declared in enumerate(types)]
            for i, (_, failures) in enumerate(cases):
                for value, error, is_null in failures:
                    arguments = [good for good, _ in cases]
                    arguments[i] = value
                    text = '%sin method \'%s\', argument %d of type \'%s\'' % (
                        'invalid null reference ' if is_null else '', name, i + 1, types[i])
                    self.assert_raises(error, text, getattr(module, name), arguments)
                    checked += 1
        self.assertGreater(checked, 500)


if __name__ == '__main__':
    unittest.main()
