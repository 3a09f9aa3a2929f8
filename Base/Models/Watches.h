#pragma once
#include <QProperty>
#include <memory>
#include <utility>
#include <vector>

// Functions of bindable properties that somebody follows. Whatever properties `read` reads are tracked, in each run
// anew; when what it gives has become another, `changed` is called, at once. Ends with this object, or with the
// properties. Main thread only.
class Watches {
public:
    template <class Read, class Changed> void add(Read read, Changed changed)
    {
        m_watches.push_back(std::make_shared<Watch<Read, Changed>>(std::move(read), std::move(changed)));
    }

private:
    template <class Read, class Changed> struct Watch {
        Watch(Read read, Changed changed)
            : value(Qt::makePropertyBinding(std::move(read))),
              notifier(value.addNotifier(std::move(changed)))
        {
        }
        QProperty<std::remove_cvref_t<std::invoke_result_t<Read>>> value;
        QPropertyNotifier notifier;
    };
    std::vector<std::shared_ptr<void>> m_watches;
};
