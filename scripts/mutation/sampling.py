"""Which of the changes are tried, and in which order."""
import random


def drawn(places, seed):
    """All places in an order that the seed decides: the rooms take turns, so that any
    beginning of it has about as many of each."""
    by_room = {}
    for place in sorted(places, key=lambda p: p.address):
        by_room.setdefault(place.room, []).append(place)
    for room in sorted(by_room):
        # Of each room the same, whichever others there are.
        random.Random(f"{seed} {room}").shuffle(by_room[room])
    order = []
    for turn in range(max(map(len, by_room.values()), default=0)):
        order += [by_room[room][turn] for room in sorted(by_room) if turn < len(by_room[room])]
    return order
