"""The colours by which the icon tells the states apart."""

GREEN = (78, 201, 143)  # all is well
RED = (229, 83, 75)  # something needs a person
TOLERANCE = 3  # of 255, for what blending rounds


def shows(colours, wanted):
    """Whether one of the colours is the wanted one."""
    return any(all(abs(one - other) <= TOLERANCE for one, other in zip(colour, wanted)) for colour in colours)
