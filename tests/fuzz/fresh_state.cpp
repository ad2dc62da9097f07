#include "fuzz/fresh_state.hpp"

#include "model/params.hpp"
#include "model/recall.hpp"
#include "model/rsd.hpp"
#include "model/tables.hpp"
#include "model/tim.hpp"
#include "settings/settings.hpp"
#include "tmd/counters.hpp"
#include "tmd/current.hpp"
#include "tmd/packets.hpp"
#include "tmd/tmdux.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/tracked.hpp"

#include <cstdio>

using namespace vexbind;

static void setSettingsBack() {
    Verbose = 0;
    Dump = dumpOff;
    vout = stdout;
    dout = stdout;
    scaleFactor = 0;
    scale = 0.0;
    offsetX = offsetY = offsetZ = 0;
    Tmdfile = nullptr;
    Prjfile = nullptr;
    arcade = homeLayout;
    cwd = {};
    _cwd = {};
}

static void setModelBack() {
    ObjList = ObjectList{};
    vertex = normal = polygon = material = nullptr;
    maxVert = maxNorm = maxPoly = maxMat = 0;
    free_textures();
    forget_vertex_table();
    forget_normal_table();
    copiedGeometry = 0;
    // The pool of the materials' numbers keeps its first block, which outlasts every run: it is made here,
    // out of the run's own memory, before the first one. The inputs are too small to fill it.
    MaterialRecord first{};
    set_params(first, ParamList{});
    reuse_pool();
}

static void setTmdBack() {
    TmdData = TmdBuild{};
    currentObject = nullptr;
    currentPolygon = 0;
    for (const PacketRow& row : packetRows) {
        *row.opaque = 0;
        *row.translucent = 0;
    }
    nOthers = 0;
}

static void setUtilkitBack() {
    _ignoreErr_ = {};
    _igno_ = 0;
    allocTotal = allocCount = freeCount = 0;
    pendingWords.file = nullptr;
    pendingWords.end = 0;
}

void setStateBack() {
    setModelBack();
    setTmdBack();
    setSettingsBack();
    setUtilkitBack(); // last: what is released above is counted
}
