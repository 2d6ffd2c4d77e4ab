#include "qdeclarativenotices_p.h"

#include <QtCore/QLoggingCategory>

#include <atomic>
#include <cstring>

namespace {

// Read by whichever thread makes a category.
std::atomic<QLoggingCategory::CategoryFilter> previousFilter{nullptr};

/**
 * QML 1 content knows no other form of handlers in Connections than the one that the engine warns of, and no
 * restoreMode in Binding.
 */
void filterNotices(QLoggingCategory *category)
{
    previousFilter.load()(category);
    if (std::strcmp(category->categoryName(), "qt.qml.connections") == 0
        || std::strcmp(category->categoryName(), "qt.qml.binding.restoreMode") == 0)
        category->setEnabled(QtWarningMsg, false);
}

} // namespace

void QDeclarativeNotices::silence()
{
    // Installing runs the filter at once, so the one it calls must be known before.
    previousFilter = QLoggingCategory::installFilter(nullptr);
    QLoggingCategory::installFilter(filterNotices);
}
