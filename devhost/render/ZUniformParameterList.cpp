#include "host/render/ZUniformParameterList.h"

#define Element ZUniformParameter
#define List ZUniformParameterList
#include "devhost/render/ParameterListOperations.inc"
