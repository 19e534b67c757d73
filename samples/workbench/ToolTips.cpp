// ToolTips.cpp - each control keeps its tip text; no tip window shows it yet.
#include "ToolTips.h"

ToolTips::ToolTips() = default;

void ToolTips::attach(PWindowObject &control, PString const &text) { control.setTipText(text); }
