teskwin_classes(events PError PEvent PRespond PWindowProc PWindowObject PAppInterface)
