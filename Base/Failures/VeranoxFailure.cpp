#include "Base/Failures/VeranoxFailure.h"
#include "Base/Failures/VeranoxCancellation.h"

QString describeFailure(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const VeranoxError &error) {
        return error.localizedDescription();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what());
    }
}

bool isCancellation(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const VeranoxCancellation &) {
        return true;
    } catch (const std::exception &) {
        return false;
    }
}
