# Made by bindings/describe/describe; renew it with its option --renew.
"""The version of the library that the package was made for."""

VERSION = "7.9.2"
