teskwin_classes(contexts PRectangle)
