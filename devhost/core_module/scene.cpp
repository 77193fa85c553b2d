// SPDX-License-Identifier: MIT
// The scene: its nodes, paths, attributes, lists of these, and files.

#include "devhost/core_module/items.h"
#include "devhost/core_module/scene_values.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZFileIO.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZObject.h"
#include "host/core/ZPlug.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZStringArray.h"

#define ROW_LIST "devhost/core_module/scene.def"
#define ROW_TABLE scene_rows
#include "wrappers/rows/make_rows.h"
