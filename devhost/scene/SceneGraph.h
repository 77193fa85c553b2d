// SPDX-License-Identifier: MIT
#pragma once

// The scene that the host holds: a graph of named nodes with meshes, cameras, lights and materials.
//
// A node is named by a NodeId; a cleared scene uses the ids again, so whoever keeps one for long
// keeps a ZObject, which also carries the generation. Rendering threads may read a scene at the
// same time as long as nobody changes it.

#include "host/base/HostApi.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZObject.h"
#include "host/core/ZVector.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace devhost {

using NodeId = int;
inline constexpr NodeId kNoNode = -1;

/// Triangles in the node's own space. All arrays are flat; normals are always there, one for each
/// position, and what else there is of a vertex is empty or for each position.
struct Mesh {
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<float> uvs, secondUvs; // pairs
    std::vector<float> colors;         // linear red, green, blue and alpha
    std::vector<float> tangents;       // as the file has them: unit vectors, and 1 or -1 (mirrored)
    std::vector<unsigned> triangles;
    /// The material node of each triangle; kNoNode for the default grey.
    std::vector<NodeId> materials;
    /// The corners of each face, where not all are triangles; a face of n corners is n - 2
    /// triangles, and the faces' triangles come in the faces' order.
    std::vector<unsigned> faceSizes;

    unsigned vertexCount() const { return unsigned(positions.size() / 3); }
    unsigned triangleCount() const { return unsigned(triangles.size() / 3); }
};

/// Some nodes of the scene: those named here with all below them, or all others.
struct NodeChoice {
    bool except = true; // all but the nodes
    std::vector<NodeId> nodes;
};

/// Looks down its own -Z axis, Y up.
struct Camera {
    double verticalFieldOfView = 45;   // degrees
    double horizontalFieldOfView = 45; // degrees
    double filmAspect = 1;             // width over height
    double nearClip = 0.1;
    double farClip = 10000;
    bool orthographic = false;
    double orthographicWidth = 10;
    std::string imageName; // background image, may be empty
};

/// Directional and spot lights shine along their own -Z axis.
struct Light {
    enum Kind { kAmbient, kDirectional, kPoint, kSpot };
    Kind kind = kDirectional;
    ZVector color = ZVector(1, 1, 1);
    /// The light on a unit of surface that squarely faces it, at a distance of 1 where the distance
    /// counts: lux of ambient and directional lights, candela of the others.
    double intensity = 1;
    int decay = 0;            // exponent of the distance by which the light falls off
    double innerCone = 0;     // radians from the axis to where a spot light begins to fade
    double outerCone = 0.8;   // radians from the axis to where it has faded out
    bool isDefault = false;   // put in because the file has no light
    NodeChoice illuminated;   // the objects that it lights
    NodeChoice shadowCasters; // the objects that cast shadows in its light
};

/// Which texture coordinates of a surface reach which place of an image: (u, v, 1) of the set times
/// the matrix. Both have v upwards.
struct TexturePlacement {
    int uvSet = 0; // 0 or 1
    double matrix[3][2] = {{1, 0}, {0, 1}, {0, 0}};
};

struct Material {
    /// What the alpha of texture and vertices does.
    enum Alpha {
        kIgnored, // nothing: the opacity is the same everywhere
        kMasked,  // with the opacity, it leaves the surface whole or cuts holes into it
        kBlended  // it multiplies the opacity
    };
    ZVector diffuse = ZVector(0.5, 0.5, 0.5);
    ZVector specular = ZVector(0, 0, 0);
    double shininess = 20; // cosine power of the highlight
    ZVector emission = ZVector(0, 0, 0);
    ZVector reflectivity = ZVector(0, 0, 0); // share of mirrored light
    double opacity = 1;
    Alpha alpha = kIgnored;
    double alphaCutoff = 0.5;         // below it, a masked surface has a hole
    bool unlit = false;               // shows the diffuse colour as it is
    NodeId texture = kNoNode;         // multiplies the diffuse colour
    NodeId emissionTexture = kNoNode; // multiplies the emission
    TexturePlacement placement, emissionPlacement;
};

/// An image in memory: 4 bytes for each pixel, row 0 at the top.
struct Pixels {
    unsigned width = 0, height = 0;
    std::vector<unsigned char> rgba;
};

struct Texture {
    /// What lies beside the image.
    enum Wrap { kRepeated, kMirrored, kClamped };
    std::string fileName;                 // as the scene file gives it; empty when embedded
    std::shared_ptr<const Pixels> pixels; // null until loaded, see devhost/image/TextureImage.h
    Wrap wrapU = kRepeated, wrapV = kRepeated;
    bool smooth = true;      // between the pixels, else each is a square of one colour
    std::string damage = {}; // why an embedded image cannot be decoded
};

/// What a picture of the scene is made of. Child layers are child nodes; their members are the
/// layer's too.
struct RenderLayer {
    /// An attribute with a value of its own in this layer.
    struct Adjustment {
        NodeId node;
        std::string attribute;
        std::string name; // of the layer's own attribute that holds the value
    };
    bool isDefault = false; // holds the whole scene
    std::vector<NodeId> members;
    std::vector<Adjustment> adjustments;
    std::vector<NodeId> passes;
};

/// A picture that shows one thing about a layer.
struct RenderPass {
    std::string implementation = "beauty";
    std::string passId;
    std::string customTokens;
    NodeChoice objects, lights;
};

/// The images of one layer and camera; kNoNode for those that are being rendered.
struct ImageSource {
    NodeId layer = kNoNode, camera = kNoNode;
    std::string imageName; // empty for that of the render settings
};

using Payload = std::variant<std::monostate, std::shared_ptr<const Mesh>, Camera, Light, Material,
                             Texture, RenderLayer, RenderPass, ImageSource>;
using AttributeValue = std::variant<bool, int, double, std::string, ZVector, ZMatrix>;

struct Node {
    std::string name; // unique among its siblings
    /// "transform", "mesh", "camera" and "light" in the hierarchy, "material", "file",
    /// "renderLayer", "renderPass" and "imageSource" beside it.
    std::string type;
    NodeId parent = kNoNode;
    std::vector<NodeId> children;
    ZMatrix local; // to the parent's space
    bool visible = true;
    Payload payload;
    /// Further values by name, beside those that payload and hierarchy give.
    std::map<std::string, AttributeValue> attributes;

    OPENQUIL_API bool inHierarchy() const;
    const Mesh *mesh() const {
        auto held = std::get_if<std::shared_ptr<const Mesh>>(&payload);
        return held ? held->get() : nullptr;
    }
    const Camera *camera() const { return std::get_if<Camera>(&payload); }
    const Light *light() const { return std::get_if<Light>(&payload); }
    const Material *material() const { return std::get_if<Material>(&payload); }
    const Texture *texture() const { return std::get_if<Texture>(&payload); }
    const RenderLayer *layer() const { return std::get_if<RenderLayer>(&payload); }
    const RenderPass *pass() const { return std::get_if<RenderPass>(&payload); }
    const ImageSource *imageSource() const { return std::get_if<ImageSource>(&payload); }
};

struct Motion;

struct Bounds {
    ZVector low, high;
    bool empty = true;
    OPENQUIL_API void extend(const ZVector &point);
    ZVector center() const { return (low + high) * 0.5; }
    double radius() const { return (high - low).length() * 0.5; }
};

class OPENQUIL_API Scene {
  public:
    Scene();

    /// Takes every node out; handles to them read as null from then on.
    void clear();
    /// Changes whenever the scene does.
    unsigned long revision() const { return revision_; }
    /// The absolute name of the scene's file; empty when it has none.
    const std::string &fileName() const { return fileName_; }
    void setFileName(const std::string &name) { fileName_ = name; }
    /// The folder of the scene's file, else the working folder.
    std::string folder() const;

    /// Adds a node; the name gets a number behind it where a sibling has it already.
    NodeId add(const std::string &type, const std::string &name, Payload payload = {},
               NodeId parent = kNoNode);
    /// Takes a node out with all below it.
    void remove(NodeId id);

    /// Null when there is no such node.
    const Node *node(NodeId id) const;
    const Node *node(const ZObject &object) const { return node(id(object)); }
    /// As node, and counts as a change of the scene.
    Node *edit(NodeId id);
    /// The ids of all nodes, in the order in which they were added.
    std::vector<NodeId> nodes() const;
    std::vector<NodeId> meshes() const;
    std::vector<NodeId> cameras() const;
    std::vector<NodeId> lights() const;
    std::vector<NodeId> materials() const;
    std::vector<NodeId> layers() const;

    /// A node by its name, or by any end of its path ("|group|mesh", "group|mesh"); the first that
    /// was added where several match; kNoNode when none does.
    NodeId find(const std::string &name) const;
    /// A camera by its own or its transform's name; the first camera when `name` is empty.
    NodeId findCamera(const std::string &name = {}) const;
    /// The full path of a node of the hierarchy, the plain name of another.
    std::string path(NodeId id) const;
    ZMatrix worldMatrix(NodeId id) const;
    /// True when the node and all nodes above it are visible.
    bool isVisible(NodeId id) const;
    /// True when the node is one of the chosen ones, or lies below one.
    bool isChosen(NodeId id, const NodeChoice &choice) const;
    /// World-space bounds of the visible meshes.
    Bounds bounds() const;

    /// A value by name: those of payload and hierarchy ("intensity", "visibility", "matrix" ...),
    /// then the node's further attributes. Empty when the node has no such attribute.
    std::optional<AttributeValue> attribute(NodeId id, const std::string &name) const;
    /// Sets an attribute that exists; numbers and truth values convert to each other. False when
    /// there is no such attribute, or it holds another kind of value.
    bool setAttribute(NodeId id, const std::string &name, const AttributeValue &value);

    /// The layer that is being rendered: the default layer until another is set; kNoNode in a scene
    /// without layers.
    NodeId currentLayer() const;
    /// Takes back the old layer's attribute values and brings in those of the new one. False when
    /// the node is no layer.
    bool setCurrentLayer(NodeId layer);
    /// True when the node, or one above it, is a member of the layer or of a layer below that.
    bool isInLayer(NodeId id, NodeId layer) const;
    /// As isInLayer, for the current layer. The light of a scene that has no other is in every one,
    /// and all of a scene without layers counts.
    bool isInCurrentLayer(NodeId id) const;
    /// True when the node is visible and in the current layer.
    bool isRendered(NodeId id) const;

    /// The handle of a node, null for kNoNode.
    ZObject object(NodeId id) const;
    /// The node of a handle; kNoNode when it is null or the node was removed.
    NodeId id(const ZObject &object) const;

    /// Gives a scene that has no camera one named "persp", which frames the visible meshes, a
    /// scene that has no light three directional ones that go with the camera ("headlight",
    /// "fillLight" and "rimLight"), and a scene that has no layer the default layer.
    void addDefaults();

    /// Puts the other scene's nodes in place of this scene's; handles to the old nodes read as
    /// null. The time stays.
    void replaceBy(Scene &&other);

    /// What moves by itself, from now on.
    void setMotion(Motion motion);
    /// Brings all that moves to its state at the time. What a layer adjusts keeps the layer's
    /// value.
    void setTime(double seconds);
    double time() const { return time_; }
    /// Bends the meshes to the nodes that hold them, where those moved since.
    void deformMeshes();

  private:
    struct Slot {
        unsigned generation = 0;
        std::unique_ptr<Node> node;
    };
    std::vector<NodeId> select(bool (*wanted)(const Node &)) const;
    bool isAtOrBelow(NodeId id, const std::vector<NodeId> &tops) const;
    void addDefaultLights();
    bool storeAttribute(NodeId id, const std::string &name, const AttributeValue &value);
    std::string uniqueName(const std::string &wanted, NodeId parent);
    /// Moves a node by its animation, below what the current layer adjusts.
    void moveUnadjusted(NodeId id, const ZMatrix &local);
    /// World-space bounds of the visible meshes over the whole of their motion.
    Bounds motionBounds();

    std::vector<Slot> slots_;
    std::vector<NodeId> order_;
    NodeId currentLayer_ = kNoNode;
    /// The values outside the current layer of what it adjusts, in its adjustments' order.
    std::vector<AttributeValue> unadjusted_;
    /// Names taken below each parent, with the number to try next behind them.
    std::map<std::pair<NodeId, std::string>, unsigned> names_;
    unsigned long revision_ = 0;
    std::string fileName_;
    std::shared_ptr<Motion> motion_; // null where nothing moves
    double time_ = 0;                // seconds
    unsigned long deformedRevision_ = 0;
};

/// A point carried by a matrix, its translation included.
OPENQUIL_API ZVector transformPoint(const ZVector &point, const ZMatrix &matrix);

/// The scene of this process; an empty one with the defaults at first.
OPENQUIL_API Scene &scene();

} // namespace devhost
