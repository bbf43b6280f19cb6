// Nothing: the precompiled header of the tests belongs to a target, and a target needs a source.
