"""Vector layers: features with ``__geo_interface__``, so that shapely's ``shape()`` takes a
feature's geometry and geopandas' ``GeoDataFrame.from_features()`` takes a layer."""

import os

import numpy as np

from . import _zephra

_GEOMETRY_TYPES = {"point": "Point", "line": "LineString", "polygon": "Polygon"}


class Feature:
    """A point, line or polygon of a layer, with its id. ``points`` holds the vertices as the
    library stores them, a polygon's rings ended by a vertex at (0, 0); ``geometry`` is the
    GeoJSON-like geometry, ``__geo_interface__`` the GeoJSON-like feature."""

    def __init__(self, layer, feature):
        self._layer = layer  # keeps the layer, which owns the feature, alive
        self._feature = feature

    @property
    def id(self):
        return self._feature.id

    @property
    def points(self):
        return self._feature.points

    @property
    def selected(self):
        return self._feature.selected

    @property
    def geometry(self):
        kind = _GEOMETRY_TYPES.get(self._layer.layer_type)
        if kind is None:
            raise ValueError(f"a layer of type {self._layer.layer_type!r} has no geometry")
        points = self._feature.points.astype(np.float64)
        if kind == "Polygon":
            return {"type": kind, "coordinates": _rings(points)}
        if kind == "Point" and len(points) == 1:
            return {"type": kind, "coordinates": tuple(points[0])}
        return {"type": "MultiPoint" if kind == "Point" else kind,
                "coordinates": [tuple(p) for p in points]}

    @property
    def __geo_interface__(self):
        return {"type": "Feature", "id": self.id, "geometry": self.geometry,
                "properties": {"id": self.id}}

    def __repr__(self):
        return f"<zephra.Feature {self.id} of {len(self._feature)} vertices>"


class Vector:
    """A vector layer of the family: the coordinate file and the ``.dvc`` header beside it.

    Indexing and iteration give :class:`Feature` objects; ``__geo_interface__`` is a
    FeatureCollection. ``layer`` is the library's layer with the geometry operations
    (find_nearest, point_in_poly, area, centroid, select, add_feature, save)."""

    def __init__(self, layer_type="null", *, layer=None):
        self.layer = layer if layer is not None else _zephra.Vector(layer_type)

    def __len__(self):
        return len(self.layer)

    def __getitem__(self, index):
        return Feature(self.layer, self.layer[index])

    def __iter__(self):
        return (self[i] for i in range(len(self)))

    @property
    def layer_type(self):
        return self.layer.layer_type

    @property
    def bounds(self):
        """(minx, miny, maxx, maxy) of all vertices."""
        return self.layer.bounds

    @property
    def __geo_interface__(self):
        return {"type": "FeatureCollection",
                "features": [feature.__geo_interface__ for feature in self]}

    def add_feature(self, id, vertices):  # noqa: A002 - the library's own word
        """Appends a feature of (n, 2) vertices; a polygon's rings end at a vertex (0, 0)."""
        self.layer.add_feature(id, vertices)

    def save(self, path):
        """Writes the coordinate file in text form and the ``.dvc`` beside it."""
        self.layer.save(os.fspath(path))

    def __repr__(self):
        return f"<zephra.Vector {self.layer_type} of {len(self)} features>"


def open_vector(path):
    """Loads the vector layer at path (its coordinate file, with the ``.dvc`` beside it)."""
    return Vector(layer=_zephra.Vector.open(os.fspath(path)))


def _rings(points):
    """The rings of a polygon's vertex list, split at the (0, 0) separators."""
    rings, ring = [], []
    for x, y in points:
        if x == 0.0 and y == 0.0:
            rings.append(ring)
            ring = []
        else:
            ring.append((float(x), float(y)))
    rings.append(ring)
    return [ring for ring in rings if ring]
