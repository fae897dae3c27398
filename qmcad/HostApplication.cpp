// The host's one application object: the event loop of its windows and the module's.
#include "HostApplication.h"

#include "base/StrUtil.h"

#include <exception>
#include <new>

bool CHostApplication::notify(QObject* pReceiver, QEvent* pEvent) {
    std::wstring strWhat;
    try {
        return QApplication::notify(pReceiver, pEvent);
    } catch (const std::bad_alloc&) {
        strWhat = L"内存不足";
    } catch (const std::exception& e) {
        strWhat = Utf8ToWide(e.what());
    } catch (...) {
        strWhat = L"未知异常";
    }
    try {
        if (m_onEscape)
            m_onEscape(strWhat);
    } catch (...) {
        // Nothing is left to tell it with.
    }
    return false;
}
