// SPDX-License-Identifier: MIT
// Opening of scene files.
#include "host/core/ZFileIO.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"
#include "host/core/ZString.h"

ZStatus ZFileIO::open(const ZString &fileName) {
    return devhost::loadScene(fileName.asChar());
}

ZStatus ZFileIO::newScene() {
    devhost::newScene();
    return ZStatus();
}

ZString ZFileIO::currentFile() {
    return ZString(devhost::scene().fileName().c_str());
}

const char *ZFileIO::className() {
    return "ZFileIO";
}
