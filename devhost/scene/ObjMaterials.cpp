// SPDX-License-Identifier: MIT
#include "devhost/scene/ObjMaterials.h"

#include "devhost/scene/ObjText.h"
#include "devhost/scene/SceneLoader.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace devhost {

namespace {

namespace fs = std::filesystem;

/// A texture statement: options, then the name of the file, which may have blanks.
struct TextureStatement {
    std::string file;
    bool clamp = false;
    float offset[2] = {0, 0}, scale[2] = {1, 1};
    std::string leftOut; // the options that are
};

class LibraryReader {
  public:
    LibraryReader(const std::string &path, Scene &scene, FileNotices &notices,
                  std::map<std::string, NodeId, std::less<>> &materials)
        : path_(path), text_(path), scene_(scene), notices_(notices), materials_(materials) {}

    void read() {
        while (text_.next())
            readStatement();
        finishMaterial();
    }

  private:
    struct Draft {
        std::string name;
        Material material;
        bool hasDiffuse = false, hasEmission = false, hasDissolve = false;
        std::optional<int> illumination;
        double refraction = 1;
    };

    void tell(const std::string &kind, const std::string &found, const std::string &instead) {
        notices_.addFor(path_, kind, text_.place(), found, instead);
    }

    void readStatement() {
        const std::string_view word = text_.word();
        Material &material = draft_.material;
        if (word == "newmtl") {
            finishMaterial();
            draft_ = Draft();
            draft_.name = text_.rest();
            material.diffuse = material.specular = ZVector();
            material.shininess = 1;
        } else if (draft_.name.empty()) {
            tell("statement", "'" + std::string(word) + "' stands before the first material",
                 "it is left out");
        } else if (word == "Kd") {
            material.diffuse = color();
            draft_.hasDiffuse = true;
        } else if (word == "Ks") {
            material.specular = color();
        } else if (word == "Ke") {
            material.emission = color();
            draft_.hasEmission = true;
        } else if (word == "Ns") {
            material.shininess = number();
        } else if (word == "Ni") {
            draft_.refraction = number();
        } else if (word == "d") {
            readDissolve();
        } else if (word == "Tr") {
            readTransparency();
        } else if (word == "illum") {
            draft_.illumination = int(number());
        } else if (word == "map_Kd") {
            material.texture = addTexture(material.placement);
        } else if (word == "map_Ke") {
            material.emissionTexture = addTexture(material.emissionPlacement);
        } else if (word != "Ka") { // there is no ambient light in such scenes
            tell("material statement",
                 "'" + std::string(word) + "' of material '" + draft_.name + "'", "it is left out");
        }
    }

    double number() { return text_.numbers(1)[0]; }

    /// One number is a grey.
    ZVector color() {
        const auto values = text_.numbers(1);
        return values.size() < 3 ? ZVector(values[0], values[0], values[0])
                                 : ZVector(values[0], values[1], values[2]);
    }

    void readDissolve() {
        if (text_.rest().starts_with("-halo")) {
            text_.token();
            tell("material statement", "'d -halo' of material '" + draft_.name + "'",
                 "it is the same in all directions");
        }
        draft_.material.opacity = number();
        draft_.hasDissolve = true;
    }

    void readTransparency() {
        const double opacity = 1 - number();
        if (draft_.hasDissolve)
            tell("material statement", "'Tr' beside 'd' of material '" + draft_.name + "'",
                 "'d' counts");
        else
            draft_.material.opacity = opacity;
    }

    TextureStatement textureStatement() {
        TextureStatement result;
        while (text_.rest().starts_with('-')) {
            const std::string option(text_.token());
            if (option == "-clamp")
                result.clamp = text_.token() == "on";
            else if (option == "-o")
                readUpTo3(result.offset);
            else if (option == "-s")
                readUpTo3(result.scale);
            else
                leaveOut(option, result);
        }
        result.file = text_.rest();
        std::replace(result.file.begin(), result.file.end(), '\\', '/');
        return result;
    }

    /// Takes one to three numbers off the rest, the first two of which count.
    void readUpTo3(float target[2]) {
        float third = 0;
        for (int k = 0; k < 3 && text_.takeNumber(k < 2 ? target[k] : third);)
            ++k;
    }

    void leaveOut(const std::string &option, TextureStatement &statement) {
        statement.leftOut += (statement.leftOut.empty() ? "" : ", ") + option;
        float ignored[2];
        if (option == "-t" || option == "-mm" || option == "-boost" || option == "-bm" ||
            option == "-texres")
            readUpTo3(ignored);
        else
            text_.token(); // "on", "off" or a word
    }

    NodeId addTexture(TexturePlacement &placement) {
        const TextureStatement statement = textureStatement();
        if (statement.file.empty())
            text_.fail("'" + std::string(text_.word()) + "' names no file");
        if (!statement.leftOut.empty())
            tell("texture option",
                 "option " + statement.leftOut + " of texture '" + statement.file + "'",
                 "it is left out");
        for (int k = 0; k < 2; ++k) {
            placement.matrix[k][k] = statement.scale[k];
            placement.matrix[2][k] = statement.offset[k];
        }
        Texture texture;
        texture.fileName = statement.file;
        texture.wrapU = texture.wrapV = statement.clamp ? Texture::kClamped : Texture::kRepeated;
        return scene_.add("file", fs::path(statement.file).stem().string(), texture);
    }

    void finishMaterial() {
        if (draft_.name.empty())
            return;
        Material &material = draft_.material;
        if (material.texture != kNoNode && !draft_.hasDiffuse)
            material.diffuse = ZVector(1, 1, 1);
        if (material.emissionTexture != kNoNode && !draft_.hasEmission)
            material.emission = ZVector(1, 1, 1);
        applyIllumination();
        if (materials_.contains(draft_.name))
            tell("material", "there is a material '" + draft_.name + "' already",
                 "the first one counts");
        else
            materials_[draft_.name] = scene_.add("material", draft_.name, material);
    }

    /// The illumination models: 0 is the plain colour, 1 has no highlight, 3 and 5 to 8 mirror the
    /// surroundings, 4, 6, 7 and 9 are glass, 10 is for shadows only.
    void applyIllumination() {
        const int model = draft_.illumination.value_or(2);
        Material &material = draft_.material;
        material.unlit = model == 0;
        if (model == 1)
            material.specular = ZVector();
        if (model == 3 || (model >= 5 && model <= 8))
            material.reflectivity = material.specular;
        if (model < 0 || model > 9)
            tell("illumination model",
                 "illumination model " + std::to_string(model) + " of material '" + draft_.name +
                     "'",
                 "it is lit with a highlight");
        const bool refracts = model == 6 || model == 7 || model == 4 || model == 9;
        if (refracts && draft_.refraction != 1)
            tell("refraction", "material '" + draft_.name + "' refracts light",
                 "rays go straight through it");
    }

    const std::string path_;
    ObjText text_;
    Scene &scene_;
    FileNotices &notices_;
    std::map<std::string, NodeId, std::less<>> &materials_;
    Draft draft_;
};

} // namespace

void addObjMaterials(const std::string &path, Scene &scene, FileNotices &notices,
                     std::map<std::string, NodeId, std::less<>> &materials) {
    try {
        LibraryReader(path, scene, notices, materials).read();
    } catch (const BadFile &error) {
        throw BadFile(fs::path(path).filename().string() + ": " + error.what());
    }
}

} // namespace devhost
