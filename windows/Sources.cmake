teskwin_classes(windows PWindow)
