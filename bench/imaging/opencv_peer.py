#!/usr/bin/python3
"""OpenCV's nearest equivalents of the image bench's operations, on one thread, on pictures of
the same size and depths (4096 x 4096, 24-bit and 8-bit, random pixels), in megapixels per
second, counted as the image bench counts them: source pixels, or written pixels for scaling.

    /usr/bin/python3 bench/imaging/opencv_peer.py [runs]      (Debian's python3-opencv)
"""
import sys
import time

import cv2
import numpy as np

SIDE = 4096
MEGAPIXELS = SIDE * SIDE / 1e6


RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 3


def rate(body, megapixels=MEGAPIXELS, runs=RUNS):
    """Megapixels per second of the fastest of `runs` calls."""
    best = float("inf")
    for _ in range(runs):
        start = time.perf_counter()
        body()
        best = min(best, time.perf_counter() - start)
    return megapixels / best


def rotation(image, degrees, flags):
    h, w = image.shape[:2]
    matrix = cv2.getRotationMatrix2D((w // 2, h // 2), degrees, 1.0)
    cos, sin = abs(matrix[0, 0]), abs(matrix[0, 1])
    size = (int(w * cos + h * sin), int(w * sin + h * cos))
    matrix[0, 2] += size[0] / 2 - w // 2
    matrix[1, 2] += size[1] / 2 - h // 2
    return cv2.warpAffine(image, matrix, size, flags=flags, borderMode=cv2.BORDER_CONSTANT)


def edges(image):
    dx = cv2.Sobel(image, cv2.CV_16S, 1, 0, ksize=3)
    dy = cv2.Sobel(image, cv2.CV_16S, 0, 1, ksize=3)
    return cv2.convertScaleAbs(cv2.magnitude(dx.astype(np.float32), dy.astype(np.float32)))


def main():
    cv2.setNumThreads(1)
    rng = np.random.default_rng(7)
    colour = rng.integers(0, 256, (SIDE, SIDE, 3), dtype=np.uint8)
    grey = rng.integers(0, 256, (SIDE, SIDE), dtype=np.uint8)
    square = np.ones((3, 3), np.uint8)
    kernel = np.array([[1, 2, 1], [2, 4, 2], [1, 2, 1]], np.float32) / 16
    sharpen = np.array([[-1, -1, -1], [-1, 9, -1], [-1, -1, -1]], np.float32)

    cases = [
        ("rotate(90): cv2.rotate", lambda im: cv2.rotate(im, cv2.ROTATE_90_COUNTERCLOCKWISE), MEGAPIXELS),
        ("rotate(30): warpAffine nearest", lambda im: rotation(im, 30, cv2.INTER_NEAREST), MEGAPIXELS),
        ("rotate(30): warpAffine bilinear", lambda im: rotation(im, 30, cv2.INTER_LINEAR), MEGAPIXELS),
        ("scale(0.5): resize nearest", lambda im: cv2.resize(im, None, fx=0.5, fy=0.5,
                                                            interpolation=cv2.INTER_NEAREST), MEGAPIXELS / 4),
        ("scale(0.5): resize bilinear", lambda im: cv2.resize(im, None, fx=0.5, fy=0.5,
                                                             interpolation=cv2.INTER_LINEAR), MEGAPIXELS / 4),
        ("scale(2): resize nearest", lambda im: cv2.resize(im, None, fx=2, fy=2,
                                                          interpolation=cv2.INTER_NEAREST), MEGAPIXELS * 4),
        ("NLFilter median: medianBlur 3", lambda im: cv2.medianBlur(im, 3), MEGAPIXELS),
        ("NLFilter minimum: erode 3x3", lambda im: cv2.erode(im, square), MEGAPIXELS),
        ("NLFilter maximum: dilate 3x3", lambda im: cv2.dilate(im, square), MEGAPIXELS),
        ("LFilter(12): filter2D 3x3", lambda im: cv2.filter2D(im, -1, kernel), MEGAPIXELS),
        ("LFilter(13): filter2D 3x3", lambda im: cv2.filter2D(im, -1, sharpen), MEGAPIXELS),
        ("edgeDetector: Sobel x, y, magnitude", edges, MEGAPIXELS),
        # Grey from colour has no 8-bit counterpart.
        ("grayScale: cvtColor BGR2GRAY", lambda im: cv2.cvtColor(im, cv2.COLOR_BGR2GRAY) if im.ndim == 3 else None,
         MEGAPIXELS),
    ]
    print("%dx%d picture, megapixels per second, one thread" % (SIDE, SIDE))
    print("%-38s %10s %10s" % ("operation", "24-bit", "8-bit"))
    for name, body, megapixels in cases:
        grey_rate = "%10.1f" % rate(lambda: body(grey), megapixels) if body(grey) is not None else "%10s" % "-"
        print("%-38s %10.1f %s" % (name, rate(lambda: body(colour), megapixels), grey_rate))


if __name__ == "__main__":
    main()
