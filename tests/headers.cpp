// Nothing of its own: the target of the headers that all tests share.
