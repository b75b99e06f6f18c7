#include "Korvane/window/audit/AuditChain.h"

#include "Korvane/audit/AuditText.h"
#include "Korvane/audit/IntegrityText.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"

namespace korvane {

void AuditChain::show(const AuditChainResult& result, const std::string& keyWarning) {
    result_ = result;
    keyWarning_ = Texts::sentence(keyWarning);
    emit changed();
}

AuditChain::Integrity AuditChain::integrity() const {
    if (!result_) {
        return Unknown;
    }
    switch (result_->coverage) {
    case AuditChainResult::Coverage::verified:
        return Verified;
    case AuditChainResult::Coverage::broken:
        return Broken;
    case AuditChainResult::Coverage::unverifiable:
        return Unverifiable;
    case AuditChainResult::Coverage::empty:
        break;
    }
    return NothingToVerify;
}

QString AuditChain::text() const {
    return result_ ? Texts::sentence(integrityMessage(*result_)) : QString();
}

QString AuditChain::badge() const {
    return integrity() == Unverifiable ? Texts::sentence(AuditText::notVerifiable) : QString();
}

void AuditChain::acknowledge(const QString& reason) {
    if (!result_ || !result_->firstBrokenOperationID || reason.trimmed().isEmpty() ||
        writing_.isRunning()) {
        return;
    }
    writing_.start([this, &services = services_, broken = *result_->firstBrokenOperationID,
                    text = reason.trimmed().toStdString()](const Work::Post&) {
        std::string problem;
        try {
            (void)services.auditLog().recordChainRestart(text, broken);
        } catch (const std::exception& error) {
            problem = localizedDescription(error);
        }
        return Work::Step([this, problem] {
            emit ended(
                problem.empty()
                    ? QString()
                    : tr("The note could not be written to the log: %1").arg(Texts::data(problem)));
            if (problem.empty()) {
                emit recorded();
            }
        });
    });
}

} // namespace korvane
