"""The functions of the render families, each against the table of declared types in rows.tsv:
presence, calling flag and argument counts. tests/hostile has the complaints about arguments."""
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


if __name__ == '__main__':
    unittest.main()
