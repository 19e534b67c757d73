#include "support/TestApplication.h"

#include "widgets/PStatusBar.h"

int TestApplication::hotKeyEvent(PEvent const &event)
{
    hotKeys.push_back(static_cast<unsigned int>(event.getWParam()));
    return hotKeyAnswer;
}

int TestApplication::capturedKeyEvent(PEvent const &event)
{
    capturedKeys.push_back(static_cast<unsigned int>(event.getWParam()));
    return capturedKeyAnswer;
}

int TestApplication::getStringId(int key) const
{
    const auto found = stringIds.find(key);
    return found == stringIds.end() ? 0 : found->second;
}

void TestApplication::setProgressBar(PProgressBar *bar)
{
    progressBar = bar;
    if (bar)
        bar->create();
}
