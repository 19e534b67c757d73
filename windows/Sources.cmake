teskwin_classes(windows PWindow PDragWindow PChildFrame PFrame)
