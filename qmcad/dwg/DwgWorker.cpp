// The DWG to DXF converter process, spoken to over its standard input and output.
#include "dwg/DwgWorker.h"

#include "base/Environment.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QStringList>

#include <algorithm>
#include <cstdlib>

namespace {

std::string Hex(const std::string& s) {
    static const char kDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve(s.size() * 2);
    for (unsigned char c : s) {
        out += kDigits[c >> 4];
        out += kDigits[c & 15];
    }
    return out;
}

} // namespace

CDwgWorker::CDwgWorker(OPTIONS opt) : m_opt(std::move(opt)) {}

CDwgWorker::~CDwgWorker() {
    Stop();
}

bool CDwgWorker::IsRunning() const {
    return m_pProc && m_pProc->state() == QProcess::Running;
}

void CDwgWorker::Stop() {
    if (!m_pProc)
        return;
    if (m_pProc->state() != QProcess::NotRunning) {
        m_pProc->kill();
        m_pProc->waitForFinished(2000);
    }
    m_pProc.reset();
}

// One reply line; false at the deadline or when the process ends first.
bool CDwgWorker::ReadLine(std::string& strLine, int nTimeoutMs) {
    QDeadlineTimer deadline(nTimeoutMs);
    while (!m_pProc->canReadLine()) {
        if (m_pProc->state() != QProcess::Running || deadline.hasExpired())
            return false;
        m_pProc->waitForReadyRead(static_cast<int>(std::max<qint64>(1, deadline.remainingTime())));
    }
    QByteArray line = m_pProc->readLine();
    strLine.assign(line.constData(), line.size());
    while (!strLine.empty() && (strLine.back() == '\n' || strLine.back() == '\r'))
        strLine.pop_back();
    return true;
}

CDwgWorker::RESULT CDwgWorker::Start(std::string& strError) {
    Stop();
    m_pProc = std::make_unique<QProcess>();
    m_pProc->setStandardErrorFile(QProcess::nullDevice()); // the library's chatter
    m_pProc->start(QString::fromStdString(m_opt.strNode),
                   QStringList{QString::fromStdString(m_opt.strScript)});
    ++m_nStarts;
    if (!m_pProc->waitForStarted(m_opt.nTimeoutMs)) {
        strError = m_opt.strNode + " cannot be started";
        Stop();
        return RESULT::NoRuntime;
    }
    std::string line;
    bool bLine = ReadLine(line, m_opt.nTimeoutMs);
    if (bLine && line == "READY")
        return RESULT::Ok;
    bool bHung = !bLine && IsRunning();
    Stop();
    if (bHung) {
        strError = "the converter did not get ready within " +
                   std::to_string((m_opt.nTimeoutMs + 999) / 1000) + " s";
        return RESULT::TimedOut;
    }
    if (bLine && line.rfind("MISSING", 0) == 0) {
        strError = line.size() > 8 ? line.substr(8) : "the converter package is missing";
        return RESULT::NoPackage;
    }
    strError = bLine ? "unexpected reply: " + line : "the converter did not start";
    // A script that is missing or not runnable is a missing package to the user.
    return bLine ? RESULT::Failed : RESULT::NoPackage;
}

CDwgWorker::RESULT CDwgWorker::Convert(const std::string& strIn, const std::string& strOut,
                                       std::string& strError) {
    strError.clear();
    if (!IsRunning()) {
        RESULT r = Start(strError);
        if (r != RESULT::Ok)
            return r;
    }
    std::string request = Hex(strIn) + ' ' + Hex(strOut) + '\n';
    m_pProc->write(request.data(), static_cast<qint64>(request.size()));
    std::string line;
    if (!ReadLine(line, m_opt.nTimeoutMs)) {
        bool bHung = IsRunning();
        Stop();
        strError =
            bHung ? "no answer within " + std::to_string((m_opt.nTimeoutMs + 999) / 1000) + " s"
                  : "the converter ended unexpectedly";
        return bHung ? RESULT::TimedOut : RESULT::Failed;
    }
    if (line.rfind("OK", 0) == 0)
        return RESULT::Ok;
    Stop(); // after a failure the converter's state is not to be trusted
    strError = line.rfind("ERR ", 0) == 0 ? line.substr(4) : "unexpected reply: " + line;
    return RESULT::Failed;
}

CDwgWorker::OPTIONS DwgWorkerOptionsFromEnv() {
    CDwgWorker::OPTIONS opt;
    if (std::string strNode = EnvText("QM_NODE"); !strNode.empty())
        opt.strNode = strNode;
    opt.strScript = QMCAD_DWG_WORKER_SCRIPT;
    if (std::string strScript = EnvText("QM_DWG_WORKER"); !strScript.empty())
        opt.strScript = strScript;
    if (std::string strTimeout = EnvText("QM_DWG_TIMEOUT"); !strTimeout.empty()) {
        double dSeconds = std::atof(strTimeout.c_str());
        if (dSeconds > 0)
            opt.nTimeoutMs = static_cast<int>(dSeconds * 1000);
    }
    return opt;
}
