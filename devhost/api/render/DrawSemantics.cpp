// SPDX-License-Identifier: MIT
#include "devhost/api/render/DrawSemantics.h"

#include "devhost/session/RenderSession.h"
#include "host/core/ZTime.h"

#include <optional>

namespace devhost {

namespace {

using enum ZUniformParameter::DataSemantic;

enum Step { kWorld = 1, kView = 2, kProjection = 4 };
enum Form { kPlain, kInverse, kInverseTranspose, kTranspose, kFormCount };

/// The steps from one space to another, and what their matrix is called in each form.
struct Chain {
    int steps;
    ZUniformParameter::DataSemantic semantics[kFormCount];
};

constexpr Chain kChains[] = {
    {kWorld,
     {kSemanticWorldMatrix, kSemanticWorldInverseMatrix, kSemanticWorldInverseTransposeMatrix,
      kSemanticWorldTransposeMatrix}},
    {kView,
     {kSemanticViewMatrix, kSemanticViewInverseMatrix, kSemanticViewInverseTransposeMatrix,
      kSemanticViewTransposeMatrix}},
    {kProjection,
     {kSemanticProjectionMatrix, kSemanticProjectionInverseMatrix,
      kSemanticProjectionInverseTransposeMatrix, kSemanticProjectionTransposeMatrix}},
    {kWorld | kView,
     {kSemanticWorldViewMatrix, kSemanticWorldViewInverseMatrix,
      kSemanticWorldViewInverseTransposeMatrix, kSemanticWorldViewTransposeMatrix}},
    {kWorld | kView | kProjection,
     {kSemanticWorldViewProjectionMatrix, kSemanticWorldViewProjectionInverseMatrix,
      kSemanticWorldViewProjectionInverseTransposeMatrix,
      kSemanticWorldViewProjectionTransposeMatrix}},
    {kView | kProjection,
     {kSemanticViewProjectionMatrix, kSemanticViewProjectionInverseMatrix,
      kSemanticViewProjectionInverseTransposeMatrix, kSemanticViewProjectionTransposeMatrix}},
};

ZMatrix product(int steps, const DrawState &state) {
    ZMatrix result;
    if (steps & kWorld)
        result *= state.world;
    if (steps & kView)
        result *= state.view;
    if (steps & kProjection)
        result *= state.projection;
    return result;
}

std::optional<ZMatrix> matrixOf(ZUniformParameter::DataSemantic semantic, const DrawState &state) {
    for (const Chain &chain : kChains)
        for (int form = 0; form < kFormCount; ++form)
            if (chain.semantics[form] == semantic) {
                ZMatrix matrix = product(chain.steps, state);
                if (form == kInverse || form == kInverseTranspose)
                    matrix = matrix.inverse();
                if (form == kTranspose || form == kInverseTranspose)
                    matrix = matrix.transpose();
                return matrix;
            }
    return {};
}

} // namespace

bool readSemantic(ZUniformParameter::DataSemantic semantic, const DrawState &state,
                  std::vector<double> &numbers) {
    const double frame = renderSession().frame;
    switch (semantic) {
    case kSemanticTime:
        numbers[0] = renderSession().seconds();
        return true;
    case kSemanticFrameNumber:
        numbers[0] = frame;
        return true;
    case kSemanticViewportPixelSize:
        if (numbers.size() < 2)
            return false;
        numbers[0] = state.width;
        numbers[1] = state.height;
        return true;
    default:
        if (numbers.size() == 16) {
            if (const auto matrix = matrixOf(semantic, state)) {
                numbers.assign(matrix->matrix[0], matrix->matrix[0] + 16);
                return true;
            }
        }
        return false;
    }
}

} // namespace devhost
