teskwin_classes(contexts GContext GPainter GDC PRectangle PLaputa PImageList)
