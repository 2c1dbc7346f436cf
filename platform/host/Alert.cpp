#include "platform/host/Alert.h"

namespace {
AlertPanel::Presenter &currentPresenter()
{
    static AlertPanel::Presenter presenter;
    return presenter;
}
} // namespace

void AlertPanel::setPresenter(Presenter presenter)
{
    currentPresenter() = std::move(presenter);
}

void AlertPanel::show(const Alert &alert, Answer answer)
{
    if (!answer)
        answer = [](int) {};
    if (const Presenter &presenter = currentPresenter())
        presenter(alert, std::move(answer));
    else
        answer(static_cast<int>(alert.buttons.size()) - 1);
}
