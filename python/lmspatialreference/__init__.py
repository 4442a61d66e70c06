"""Coordinate reference systems and coordinate transformations.

In the manner of pyproj: ``CRS`` and ``Transformer.from_crs(crs_from,
crs_to).transform(xx, yy)``, with the China offsets "GCJ02" and "BD09"
beside the reference systems; ``geo.to_crs`` for GeoPandas and shapely;
``estimate`` for parameters from control points; ``config`` for the
library's configuration.

Beneath them, the bindings of liblmspatialreference. Spatial references and
transformations keep the C++ class names; methods and properties are
snake_case. Transformations work in place on NumPy float64 arrays of shape
(n, 2) or (n, 3), with the GIL released. References, transformations and
pyramids pickle by their definition, so they can be shipped to other
processes (see ``lmspatialreference.dask``).
"""

import pickle as _pickle

from ._lmspatialreference import *  # noqa: F401,F403
from . import _lmspatialreference as _native

__all__ = [name for name in dir(_native) if not name.startswith("_")]

# The one way every object of this module pickles: as the name of its maker
# in _MAKERS with the positional and keyword arguments that make it again.
# References and pyramids tell their state themselves; transformations are
# recorded by their constructors and the factory, mutators that change the
# definition record again, and classes that can tell their definition are
# asked instead.
_MAKERS = {}


def _rebuild(name, arguments, keywords=None):
    return _MAKERS[name](*arguments, **(keywords or {}))


def _record(obj, name, arguments, keywords=None):
    obj.__dict__["_definition"] = (name, tuple(arguments), dict(keywords or {}))


def _recorded(obj):
    definition = obj.__dict__.get("_definition")
    if definition is None:
        raise _pickle.PicklingError(
            f"{type(obj).__name__} was not made by a constructor or the factory of this module, "
            "so its definition is unknown and it cannot be pickled")
    return definition


def _reduce_recorded(self):
    return _rebuild, _recorded(self)


def _frozen(value):
    # Arrays and lists are copied, so the caller's later changes to them do
    # not change the recorded definition.
    if isinstance(value, list):
        return list(value)
    if type(value).__module__ == "numpy" and hasattr(value, "copy"):
        return value.copy()
    return value


def _recording(native, name, freeze=True):
    def make(*args, **kwargs):
        made = native(*args, **kwargs)
        if freeze:
            args = tuple(_frozen(a) for a in args)
            kwargs = {k: _frozen(v) for k, v in kwargs.items()}
        _record(made, name, args, kwargs)
        return made
    make.__doc__ = native.__doc__
    make.__name__ = name.rsplit(".", 1)[-1]
    return make


def _recording_constructor(cls):
    native_init = cls.__init__
    name = cls.__name__

    def __init__(self, *args, **kwargs):
        native_init(self, *args, **kwargs)
        _record(self, name, tuple(_frozen(a) for a in args), {k: _frozen(v) for k, v in kwargs.items()})

    __init__.__doc__ = native_init.__doc__
    cls.__init__ = __init__
    _MAKERS[name] = cls


def _recording_static(cls, method):
    native = getattr(cls, method)
    name = f"{cls.__name__}.{method}"
    # The rebuilt object records its definition too, so a copy pickles again.
    made = _recording(native, name)
    setattr(cls, method, staticmethod(made))
    _MAKERS[name] = made


def _reduce_state(self):
    return _rebuild, (f"{type(self).__name__}._from_state", (self._state(),))


def _install_pickling():
    T = _native
    for cls in (T.LmSpatialReference, T.LmPyramid, T.LmMultiPyramid):
        _MAKERS[f"{cls.__name__}._from_state"] = cls._from_state
        cls.__reduce__ = _reduce_state

    T.LmCoordinateTransformation.__reduce__ = _reduce_recorded
    for cls in (T.LmProjectCoordinateTransformation, T.LmParameterProjectCoordinateTransformation,
                T.LmWGS84ToGCJ02CoordinateTransformation, T.LmWGS84ToBD09CoordinateTransformation,
                T.LmGCJ02ToWGS84CoordinateTransformation, T.LmBD09ToWGS84CoordinateTransformation,
                T.LmAffineCoordinateTransformation, T.LmConverseCoordinateTransformation,
                T.LmCoordinateTransformationCombination):
        _recording_constructor(cls)
    for method in ("from_points", "translation", "rotation"):
        _recording_static(T.LmAffineCoordinateTransformation, method)

    # Classes that can tell their definition are asked, so setters need no
    # bookkeeping.
    T.LmProjectCoordinateTransformation.__reduce__ = lambda self: (
        _rebuild, (type(self).__name__, (self.source, self.target)))
    T.LmParameterProjectCoordinateTransformation.__reduce__ = _reduce_recorded
    T.LmAffineCoordinateTransformation.__reduce__ = lambda self: (
        _rebuild, ("LmAffineCoordinateTransformation", (self.elements,)))
    T.LmGCJ02ToWGS84CoordinateTransformation.__reduce__ = lambda self: (
        _rebuild, (type(self).__name__, (self.precision,)))

    def converse_reduce(self):
        _, args, kwargs = _recorded(self)
        forward = args[0] if args else kwargs["forward"]
        return _rebuild, ("LmConverseCoordinateTransformation", (forward, self.precision))
    T.LmConverseCoordinateTransformation.__reduce__ = converse_reduce

    # Mutators that change what the recorded arguments describe.
    parameter_class = T.LmParameterProjectCoordinateTransformation
    native_set_parameter = parameter_class.set_parameter

    def set_parameter(self, method, parameters):
        native_set_parameter(self, method, parameters)
        _record(self, type(self).__name__, (self.source, self.target, method, _frozen(parameters)))
    set_parameter.__doc__ = native_set_parameter.__doc__
    parameter_class.set_parameter = set_parameter

    # A new source or target drops the datum-shift parameters.
    for end in ("source", "target"):
        base = getattr(T.LmProjectCoordinateTransformation, end)

        def setter(self, reference, _base=base):
            _base.fset(self, reference)
            if isinstance(self, parameter_class):
                _record(self, type(self).__name__, (self.source, self.target, self.method, None))
        setattr(T.LmProjectCoordinateTransformation, end, property(base.fget, setter, doc=base.__doc__))

    chain_class = T.LmCoordinateTransformationCombination
    native_add = chain_class.add

    def add(self, member):
        native_add(self, member)
        name, args, kwargs = _recorded(self)
        if name == chain_class.__name__:
            members = list(args[0] if args else kwargs.get("members", []))
            _record(self, name, (members + [member],))
        elif name == "_extended":
            _record(self, name, (args[0], args[1] + [member]))
        else:
            # A chain the factory made: rebuilt by the factory, then extended.
            _record(self, "_extended", ((name, args, kwargs), [member]))
    add.__doc__ = native_add.__doc__
    chain_class.add = add

    def extended(definition, members):
        chain = _rebuild(*definition)
        for member in members:
            native_add(chain, member)
        _record(chain, "_extended", (definition, list(members)))
        return chain
    _MAKERS["_extended"] = extended

    factory = getattr(T, "LmCoordinateTransformationFactory", None)
    if factory is not None:
        for name in dir(factory):
            if name.startswith("create_"):
                _recording_static(factory, name)


_install_pickling()


# The facade comes last: it builds on the pickling installed above.
from .crs import CRS  # noqa: E402
from .transformer import Transformer  # noqa: E402
from . import config, estimate, geo  # noqa: E402

__all__ += ["CRS", "Transformer", "config", "estimate", "geo"]
