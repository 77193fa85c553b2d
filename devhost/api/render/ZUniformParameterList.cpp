// SPDX-License-Identifier: MIT
#include "host/render/ZUniformParameterList.h"

#define Element ZUniformParameter
#define List ZUniformParameterList
#include "devhost/api/render/ParameterListOperations.inc"
