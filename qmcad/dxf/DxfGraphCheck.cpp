// Cycle checks over the ownership of dictionaries and the nesting of blocks, after a file is read.
#include "dxf/DxfGraphCheck.h"

#include <unordered_map>

namespace {

enum class VISIT : char { New, OnPath, Done };

AcDbObject* ObjectOf(AcDbObjectId id) {
    return id.isValid() ? id.stub()->pObject : nullptr;
}

// Ownership: an object owns its extension dictionary, a dictionary its entries.
class COwnershipCheck {
public:
    int Run(const std::vector<AcDbObject*>& objects) {
        for (AcDbObject* p : objects)
            if (m_state[p] == VISIT::New)
                Walk(p);
        return m_nRefused;
    }

private:
    struct FRAME {
        AcDbObject* pObj;
        size_t nNext; // 0 the extension dictionary, then entry nNext - 1
    };

    void Walk(AcDbObject* pRoot) {
        std::vector<FRAME> stack{{pRoot, 0}};
        m_state[pRoot] = VISIT::OnPath;
        while (!stack.empty()) {
            FRAME& f = stack.back();
            AcDbObject* pChild = NextChild(f);
            if (f.nNext == kDone) {
                m_state[f.pObj] = VISIT::Done;
                stack.pop_back();
                continue;
            }
            if (!pChild)
                continue;
            VISIT& state = m_state[pChild];
            if (state == VISIT::OnPath) {
                Refuse(f);
            } else if (state == VISIT::New) {
                state = VISIT::OnPath;
                stack.push_back({pChild, 0});
            }
        }
    }

    static constexpr size_t kDone = static_cast<size_t>(-1);

    // The next child of the frame (null for a refused or empty edge).
    AcDbObject* NextChild(FRAME& f) {
        if (f.nNext == 0) {
            f.nNext = 1;
            AcDbObject* pExt = ObjectOf(f.pObj->extensionDictionary());
            if (f.pObj->extensionDictionary().isValid() && pExt &&
                !dynamic_cast<AcDbDictionary*>(pExt)) {
                f.pObj->setExtensionDictionaryRaw(AcDbObjectId());
                ++m_nRefused;
                return nullptr;
            }
            return pExt;
        }
        auto* pDict = dynamic_cast<AcDbDictionary*>(f.pObj);
        if (!pDict || f.nNext - 1 >= pDict->entries().size()) {
            f.nNext = kDone;
            return nullptr;
        }
        AcDbObject* pEntry = ObjectOf(pDict->entries()[f.nNext - 1].second);
        if (dynamic_cast<AcDbSymbolTable*>(pEntry)) {
            pDict->removeRawAt(f.nNext - 1);
            ++m_nRefused;
            return nullptr;
        }
        ++f.nNext;
        return pEntry;
    }

    // The edge just taken leads back onto the path.
    void Refuse(FRAME& f) {
        ++m_nRefused;
        if (f.nNext == 1) {
            f.pObj->setExtensionDictionaryRaw(AcDbObjectId());
            return;
        }
        --f.nNext;
        static_cast<AcDbDictionary*>(f.pObj)->removeRawAt(f.nNext - 1);
    }

    std::unordered_map<AcDbObject*, VISIT> m_state;
    int m_nRefused = 0;
};

// Nesting: a block contains the blocks its references and dimensions name.
class CNestingCheck {
public:
    int Run(const std::vector<AcDbObject*>& objects) {
        for (AcDbObject* p : objects)
            if (auto* pBlock = dynamic_cast<AcDbBlockTableRecord*>(p);
                pBlock && m_state[pBlock] == VISIT::New)
                Walk(pBlock);
        return m_nRefused;
    }

private:
    struct FRAME {
        AcDbBlockTableRecord* pBlock;
        size_t nNext;
    };

    static AcDbBlockTableRecord* Target(AcDbEntity* pEnt) {
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pEnt))
            return dynamic_cast<AcDbBlockTableRecord*>(ObjectOf(pRef->blockTableRecord()));
        if (auto* pDim = dynamic_cast<AcDbDimension*>(pEnt))
            return dynamic_cast<AcDbBlockTableRecord*>(ObjectOf(pDim->dimBlockId()));
        return nullptr;
    }

    static void Unlink(AcDbEntity* pEnt) {
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pEnt))
            pRef->setBlockTableRecord(AcDbObjectId());
        else if (auto* pDim = dynamic_cast<AcDbDimension*>(pEnt))
            pDim->setDimBlockId(AcDbObjectId());
    }

    void Walk(AcDbBlockTableRecord* pRoot) {
        std::vector<FRAME> stack{{pRoot, 0}};
        m_state[pRoot] = VISIT::OnPath;
        while (!stack.empty()) {
            FRAME& f = stack.back();
            const std::vector<AcDbObjectId>& ids = f.pBlock->entities();
            if (f.nNext >= ids.size()) {
                m_state[f.pBlock] = VISIT::Done;
                stack.pop_back();
                continue;
            }
            auto* pEnt = dynamic_cast<AcDbEntity*>(ObjectOf(ids[f.nNext++]));
            AcDbBlockTableRecord* pTarget = pEnt ? Target(pEnt) : nullptr;
            if (!pTarget)
                continue;
            VISIT& state = m_state[pTarget];
            if (state == VISIT::OnPath) {
                Unlink(pEnt);
                ++m_nRefused;
            } else if (state == VISIT::New) {
                state = VISIT::OnPath;
                stack.push_back({pTarget, 0});
            }
        }
    }

    std::unordered_map<AcDbBlockTableRecord*, VISIT> m_state;
    int m_nRefused = 0;
};

} // namespace

int RefuseBadReferences(const std::vector<AcDbObject*>& objects) {
    return COwnershipCheck().Run(objects) + CNestingCheck().Run(objects);
}
