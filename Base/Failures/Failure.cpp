#include "Base/Failures/Failure.h"
#include "Base/Failures/Cancellation.h"

QString describeFailure(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const LocalizedError &error) {
        return error.localizedDescription();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what());
    }
}

bool isCancellation(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const Cancellation &) {
        return true;
    } catch (const std::exception &) {
        return false;
    }
}
