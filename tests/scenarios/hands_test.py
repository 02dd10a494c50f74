"""A window under real mouse and keys: selecting, opening, renaming, menus, columns, edges, the way of the Tab key.

Implemented in platform/intuition (gadgets, events), automation/ (what a hand does) and frame/ (menus).
"""
import os
import unittest

from desktop import Desktop

# Sizes are powers of two, so that the bytes of a selection tell which files it has.
FILES = {"alpha": 1, "beta": 2, "bravo": 4, "delta": 8, "echo": 16}


class Hands(Desktop):
    def setUp(self):
        super().setUp()
        (self.home / "a drawer" / "inner").mkdir(parents=True)
        (self.home / ".hidden").touch()
        for name, size in FILES.items():
            (self.home / name).touch()
            os.truncate(self.home / name, size)
        self.open()
        self.find_rows()

    def selected(self):
        size = int(self.port("GETBYTESSELECTED"))
        return [name for name, bit in FILES.items() if size & bit]

    def selects(self, *names):
        self.wait_until(lambda: self.selected() == list(names), "%s selected" % (names,))

    def arrives(self, path):
        self.wait_until(lambda: self.port("GETCURRENTPATH").rstrip("/") == path, path)

    def find_rows(self):
        """Where rows lie: all are selected by script, and the screen is looked at."""
        rows = len(FILES) + 1
        self.first_row, bottom, self.left, _ = self.difference(
            lambda: self.port("SELECTALL"), lambda: self.port("SELECTNONE"),
            lambda top, bottom, *_: (bottom + 1 - top) % rows == 0 and bottom - top > 10 * rows)
        self.row_height = (bottom + 1 - self.first_row) // rows

    def at(self, row):
        return self.left + 60, self.first_row + row * self.row_height + self.row_height // 2

    def test_clicks_and_keys_select_open_and_rename(self):
        self.click(*self.at(1))
        self.selects("alpha")
        self.click(*self.at(3), "ctrl")
        self.selects("alpha", "bravo")
        self.click(*self.at(5), "shift")
        self.selects("bravo", "delta", "echo")
        self.click(*self.at(0), times=2)
        self.arrives("Home:a drawer")
        self.keys("BackSpace")
        self.arrives("Home:")
        self.hand("type", "br")
        self.selects("bravo")
        self.keys("Home")
        self.selects()
        self.keys("Return")
        self.arrives("Home:a drawer")
        self.keys("BackSpace")
        self.arrives("Home:")

    def test_nothing_is_done_by_hand_while_a_script_has_locked_the_window(self):
        self.click(*self.at(1))
        self.selects("alpha")
        self.port("LOCKGUI")
        self.port("RELOAD")
        self.click(*self.at(3))
        self.keys("End")
        self.port("UNLOCKGUI")
        self.click(*self.at(4), "ctrl")
        self.selects("alpha", "delta")

    def test_a_name_is_edited_in_its_row_and_one_that_exists_is_refused(self):
        self.rename(1, "alpha", "aleph")
        self.wait_until(lambda: (self.home / "aleph").exists() and not (self.home / "alpha").exists(), "the new name")
        self.note_windows()
        self.rename(3, "bravo", "echo")
        self.popup()  # the requester
        self.keys("Return")
        self.wait_until(lambda: self.windows("search", "--onlyvisible", "--class", "solvane") == self.plain, "its end")
        self.assertEqual([(self.home / name).stat().st_size for name in ("bravo", "echo")], [4, 16])

    def rename(self, row, name, new):
        lines = self.first_row + row * self.row_height, self.first_row + (row + 1) * self.row_height
        self.port("SELECTNONE")
        self.changes(*lines, self.port, "SELECTFILE NAME=" + name)
        self.changes(*lines, self.keys, "F2")
        self.keys("ctrl+a")
        self.hand("type", new)
        self.keys("Return")

    def test_menus_are_used_by_keys_and_by_mouse(self):
        entries = int(self.port("GETNUMENTRIES"))
        self.note_windows()
        self.keys("F10", "Right", "Right", "Down")
        left, top, _, _ = self.popup()
        self.keys("Escape")
        self.wait_until(lambda: self.windows("search", "--onlyvisible", "--class", "solvane") == self.plain, "no menu")
        self.keys("Escape")
        self.click(left + 12, top - 10)  # the title of that menu, "Selection"
        left, top, _, _ = self.popup()
        self.click(left + 40, top + 14)  # "Select all" is its first item
        self.selects(*FILES)
        self.keys("alt+v")
        self.popup()
        self.keys("Up", "Return")  # "Show hidden entries" is the last one
        self.wait_until(lambda: int(self.port("GETNUMENTRIES")) == entries + 1, "the hidden entry")

    def test_the_menu_key_opens_the_menu_of_the_selected_entry(self):
        self.note_windows()
        self.keys("Home")
        self.wait_until(lambda: self.port("GETNUMENTRIESSELECTED") == "1", "the drawer selected")
        self.keys("Menu")
        self.popup()
        self.keys("Down", "Return")
        self.arrives("Home:a drawer")

    def test_a_click_on_a_title_sorts_and_turns_the_arrow(self):
        title = self.left + 120, self.first_row - self.row_height // 2
        seen = []
        for turn, first in enumerate(("echo", "alpha", "echo")):
            # Never twice at one place, which were a double click.
            self.changes(self.first_row, self.at(5)[1], self.click, title[0] + 10 * (turn % 2), title[1])
            self.click(*self.at(1))
            self.selects(first)
            seen.append(self.shot().part(self.first_row - self.row_height, self.first_row - 1))
        self.assertNotEqual(seen[0], seen[1])
        self.assertEqual(seen[0], seen[2])

    def test_an_edge_that_is_dragged_or_moved_by_keys_is_there_at_the_next_start(self):
        edge = self.edge()
        self.drag(edge, (edge[0] + 60, edge[1]))
        dragged = self.edge("Left", "Left")
        self.assertEqual(dragged, (edge[0] + 60, edge[1]))
        moved = self.edge()
        self.assertEqual(moved, (edge[0] + 60 - 2 * 16, edge[1]))
        self.quit()
        self.open()
        self.assertAlmostEqual(self.edge()[0], moved[0], delta=8)  # whole hundredths of the window are kept

    def edge(self, *keys):
        """The middle of the edge beside the Navigation pane, which shows itself when it has the keyboard."""
        top, bottom, left, right = self.difference(
            lambda: self.keys("F8"), lambda: self.keys("Escape"),
            lambda top, bottom, left, right: bottom - top > 10 * (right - left))
        self.keys("F8", *keys, "Escape")
        return (left + right) // 2, (top + bottom) // 2

    def enter_path(self):
        self.changes(self.first_row - 5 * self.row_height // 2, self.first_row - self.row_height - 2, self.keys, "ctrl+l")

    def test_the_tab_key_goes_through_the_window_row_by_row(self):
        self.enter_path()
        self.hand("type", "Computer")
        self.keys("Return")
        self.arrives("Computer")
        self.enter_path()
        self.keys(*["Tab"] * 5)
        self.keys("Home", "Down", "Return")  # the first place in the Navigation pane
        self.wait_until(lambda: self.port("GETCURRENTPATH") != "Computer", "another place")
        self.port("CHANGEPATH PATH=Home:")
        self.arrives("Home:")
        self.enter_path()
        self.keys(*["Tab"] * 6)
        self.hand("type", "d")
        self.selects("delta")


if __name__ == "__main__":
    unittest.main(verbosity=2)
