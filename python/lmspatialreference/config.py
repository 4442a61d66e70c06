"""The process-wide configuration of the library.

Keys are '/'-separated paths, as in the XML file the library reads from
``LUMORA_CONFIG``::

    import lmspatialreference as lm
    lm.config.set("Kernel/SpatialReference/EPSG", "/data/EPSG.txt")
    lm.config.get("Kernel/SpatialReference/EPSG")   # '/data/EPSG.txt'
    lm.config.load("/etc/lumora.xml")                # merged in, its values win
    lm.config.clear("Kernel/SpatialReference/EPSG")  # clear() clears everything

Objects read the keys when they are made: a change reaches the objects made
after it.
"""

import os as _os

from . import _lmspatialreference as _native


def _path(key):
    if not isinstance(key, str):
        raise TypeError(f"configuration keys are str, not {type(key).__name__}")
    return key


def get(key, default=None):
    """The text stored at ``key``, or ``default`` when it is missing or empty."""
    value = _native._config_get(_path(key))
    return default if value is None else value


def set(key, value):  # noqa: A001 - the module's verb, as in get/set/clear/load
    """Stores ``value`` at ``key``; bools are stored as "true"/"false", numbers as text."""
    if isinstance(value, bool):
        text = "true" if value else "false"
    elif isinstance(value, (str, int, float)):
        text = str(value)
    else:
        raise TypeError(f"configuration values are str, bool or numbers, not {type(value).__name__}")
    if not _path(key):
        raise ValueError("a configuration key cannot be empty")
    _native._config_set(key, text)


def clear(key=""):
    """Removes ``key`` with everything below it; without a key, the whole configuration."""
    _native._config_clear(_path(key))


def load(path):
    """Merges the keys of an XML configuration file; its values win."""
    path = _os.fspath(path)
    if not _os.path.isfile(path):
        raise FileNotFoundError(f"no configuration file {path!r}")
    if not _native._config_load(path):
        raise ValueError(f"{path!r} is not a well-formed XML configuration file")
