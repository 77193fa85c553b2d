// SPDX-License-Identifier: MIT
#pragma once

// Scene files in a list, each with what is to be found in the scene, worked out by hand. A line of
// such a list is of the case that begins last:
//
//   = what the case is about
//   file NAME               what is loaded; without it, the case's own name
//   beside NAME             a file that lies beside it; the texts that follow are its
//       text of the file    indented by four
//   accessor TYPE COMPONENT [stride N]: numbers {further members}
//   zeros TYPE COUNT {further members}
//   view COMPONENT: numbers
//                           of a glTF file, whose text is that of the further members
//   half                    the rest of the file is cut off
//   replace THIS => THAT    in the whole file
//   at SECONDS              the time of the scene
//   expect WHAT: numbers    as `look` of loading_test.cpp finds them
//   notice TEXT             what is told, in this order
//   refused WORDS           the reason for which it is not loaded
//   define NAME             what to use: the lines up to the next empty one
//   use NAME                puts them in

#include "tests/scene/gltf_file.h"

#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

using Values = std::vector<double>;

struct SceneCase {
    std::string asks, file, text, refused;
    std::map<std::string, std::string> beside;
    std::map<std::string, Values> values;
    std::vector<std::string> notices;
    double seconds = 0;
};

class SceneCaseReader {
  public:
    static std::vector<SceneCase> read(const std::string &path) {
        SceneCaseReader reader;
        std::ifstream file(path);
        std::string *definition = nullptr;
        for (std::string line; std::getline(file, line);) {
            if (line.rfind("define ", 0) == 0)
                definition = &reader.definitions_[line.substr(7)];
            else if (line.empty())
                definition = nullptr;
            else if (definition)
                *definition += line + "\n";
            else
                reader.take(line);
        }
        reader.finish();
        return std::move(reader.cases_);
    }

  private:
    void take(const std::string &line) {
        const size_t blank = line.find(' ');
        const std::string word = line.substr(0, blank);
        const std::string rest = blank == std::string::npos ? "" : line.substr(blank + 1);
        if (word == "#")
            return;
        if (word == "=") {
            finish();
            cases_.push_back({rest, rest, {}, {}, {}, {}, {}, 0});
            text_ = &cases_.back().text;
            return;
        }
        SceneCase &last = cases_.at(cases_.size() - 1);
        if (word.empty()) {
            const bool returns = line.ends_with("\\r");
            *text_ += line.substr(4, line.size() - 4 - 2 * returns) + (returns ? "\r\n" : "\n");
        } else if (word == "file") {
            last.file = rest;
            text_ = &last.text;
        } else if (word == "beside") {
            text_ = &last.beside[rest];
        } else if (word == "use") {
            std::istringstream lines(definitions_.at(rest));
            for (std::string each; std::getline(lines, each);)
                take(each);
        } else if (word == "accessor" || word == "zeros" || word == "view") {
            addValues(word, rest);
        } else if (word == "replace" || word == "half") {
            changes_.push_back(rest);
        } else if (word == "at") {
            last.seconds = std::stod(rest);
        } else if (word == "expect") {
            std::istringstream numbers(rest.substr(rest.rfind(':') + 1));
            Values &values = last.values[rest.substr(0, rest.rfind(':'))];
            for (double value; numbers >> value;)
                values.push_back(value);
        } else if (word == "notice") {
            last.notices.push_back(rest);
        } else if (word == "refused") {
            last.refused = rest;
        } else {
            throw std::logic_error("unknown: " + line);
        }
    }
    void addValues(const std::string &word, const std::string &rest) {
        const size_t brace = std::min(rest.find('{'), rest.size());
        const std::string more =
            brace < rest.size() ? rest.substr(brace + 1, rest.rfind('}') - brace - 1) : "";
        std::string head = rest.substr(0, brace), type, component;
        size_t stride = 0;
        if (!gltf_)
            gltf_.emplace();
        if (word == "zeros") {
            std::istringstream(head) >> type >> stride;
            gltf_->addZeros(type.c_str(), stride, more);
            return;
        }
        std::istringstream numbers(head.substr(head.find(':') + 1));
        head.resize(head.find(':'));
        std::istringstream words(head);
        if (word == "accessor")
            words >> type;
        words >> component;
        if (std::string ignored; words >> ignored)
            words >> stride;
        Values values;
        for (std::string number; numbers >> number;)
            values.push_back(std::stod(number));
        const auto add = [&](auto zero) {
            const std::vector<decltype(zero)> own(values.begin(), values.end());
            word == "view" ? gltf_->addView(own) : gltf_->add(type.c_str(), own, more, stride);
        };
        component == "f32"   ? add(float())
        : component == "u8"  ? add(uint8_t())
        : component == "u16" ? add(uint16_t())
        : component == "i16" ? add(int16_t())
                             : add(uint32_t());
    }
    void finish() {
        if (cases_.empty())
            return;
        std::string &text = cases_.back().text;
        if (gltf_)
            text = cases_.back().file.ends_with(".glb") ? gltf_->binary(text) : gltf_->text(text);
        for (const std::string &change : changes_) {
            const size_t arrow = change.find(" => ");
            if (arrow == std::string::npos)
                text.resize(text.size() / 2);
            else
                text.replace(text.find(change.substr(0, arrow)), arrow, change.substr(arrow + 4));
        }
        gltf_.reset();
        changes_.clear();
    }

    std::map<std::string, std::string> definitions_;
    std::vector<SceneCase> cases_;
    std::string *text_ = nullptr;
    std::optional<GltfFile> gltf_;
    std::vector<std::string> changes_;
};
