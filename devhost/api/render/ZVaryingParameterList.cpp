// SPDX-License-Identifier: MIT
#include "host/render/ZVaryingParameterList.h"

#define Element ZVaryingParameter
#define List ZVaryingParameterList
#include "devhost/api/render/ParameterListOperations.inc"
