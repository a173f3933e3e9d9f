#include "zytest.h"

#include "machine/mrlibrary.h"

#include "machine/mrleftstate.h"
#include "parameter/mrmemory.h"
#include "session/mrbinding.h"
#include "stream/mrcstream.h"
#include "stream/mrtrace.h"
#include "zyvector.h"

namespace {

constexpr unsigned FirstSeed = 7;

template <class Write>
void dataMessage(Write write) {
    if (g_ostrm.beginMessage(MSG_DATA)) {
        write();
        g_ostrm.endMessage();
    }
}

}  // namespace

bool zyTest::m_checkErrorsOnly = false;

zyTest::zyTest(FuncCall tcall, FuncCall tinit, FuncLoop loop, FuncStat stat, mrString name, mrString file,
               mrString info)
    : mrTest(tcall, tinit, loop, stat, name, file, info), func(name) {}

int zyTest::run() {
    m_checkErrorsOnly = false;
    zyVector::m_seed = FirstSeed;
    return mrTest::run();
}

int zyTest::compareFunc(const mrTest* other) const { return func.compare(zyFunc(other->m_name)); }

void zyTest::funcToCstrm() {
    g_cstrm << func.prefix() + func.baseName();
    g_cstrm << func.typeName();
    g_cstrm << func.descrName();
}

bool zyTest::isFloatFunction() {
    return mrTest::isFloatFunction() && (func.found("32f") || func.found("64f"));
}

mrString zyTest::regInfo() {
    const mrString text = mrTest::regInfo();
    const int mark = text.find("MR_", 0);
    return mark == mrString::npos ? text : text.substr(0, mark) + "ZY_" + text.substr(mark + 3);
}

mrResult zyTest::checkStatus(int status, mrString name) {
    if (status == 0 || (status > 0 && m_checkErrorsOnly)) {
        return MR_OK;
    }
    const mrResult result = status < 0 ? MR_LIB_FAIL : MR_LIB_NOTE;
    g_ostrm << (status < 0 ? MSG_ERR : MSG_WARN) << (status < 0 ? "--ZYL FAIL. " : "--ZYL NOTE. ")
            << "status = " << mrText(status);
    if (!name.empty()) {
        g_ostrm << " in " << name;
    }
    g_ostrm << ": " << zyl_GetStatusString(status) << "\n" << MSG_END;
    raiseResult(countedResult(result));
    return result;
}

void zyTest::regCacheParm(mrIterator<ZyliSize>& size, mrObject* object, mrCacheCheck check) {
    if (m_cache && m_pCacheIter == nullptr) {
        m_pCacheIter = std::make_unique<mrCacheIteratorSize>(size, object, check);
        m_parms.append(m_pCacheIter.get());
    } else {
        m_parms.append(&size);
    }
}

mrResult zyTest::checkStatus(int status, const char* name) {
    mrRestoreAfterCall();
    return checkStatus(status, mrString(name));
}

int zyTest::printAllMemoryBlocks(mrString title) {
    if (!g_ostrm.beginMessage(MSG_DATA)) {
        return 0;
    }
    const int count = mrTraced("printAllMemoryBlocks", [&] {
        printFirstDebugLine(title);
        int listed = 0;
        mrForEachBlock([&](void* block, int size, mrObject* owner) {
            if (owner == nullptr || owner == MEM_OBJECT_IS_SUBOBJECT) {
                return;
            }
            printFirstBlockLine(++listed, owner, size);
            if (owner == MEM_OBJECT_IS_BUFFER) {
                printByteBlock(block, size);
            } else {
                printVectorBlock(static_cast<zyVector*>(owner));
            }
            printLastBlockLine(listed, owner);
        });
        printLastDebugLine(title);
        return listed;
    });
    g_ostrm.endMessage();
    return count;
}

void zyTest::printFirstDebugLine(mrString title) {
    g_ostrm << "======== OBJECTS OUTPUT START === " << title << " === OBJECTS OUTPUT START ========\n";
}

void zyTest::printLastDebugLine(mrString title) {
    g_ostrm << "======== OBJECTS OUTPUT END === " << title << " === OBJECTS OUTPUT END ========\n";
}

void zyTest::printFirstBlockLine(int count, mrObject* object, int size) {
    dataMessage([&] {
        const mrString description =
            object == nullptr ? mrString("MemoryBlock size=") + mrText(size) : object->objectInfo();
        g_ostrm << "======== Object " << mrText(count) << ": " << description << "\n";
    });
}

void zyTest::printLastBlockLine(int, mrObject*) { g_ostrm << "\n"; }

void zyTest::printVectorBlock(zyVector* vector) {
    dataMessage([&] { g_ostrm << vector->getString() << "\n"; });
}

void zyTest::printByteBlock(void* block, int size) {
    dataMessage([&] { g_ostrm << zyVector::getByteString(block, size) << "\n"; });
}
