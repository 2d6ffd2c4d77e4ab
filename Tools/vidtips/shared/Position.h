#pragma once

/** A place in a text file; lines and columns count from 1, and 0 stands for the file as a whole. */
struct Position
{
    int line = 0;
    int column = 0;

    friend bool operator==(Position a, Position b) { return a.line == b.line && a.column == b.column; }
    friend bool operator<(Position a, Position b)
    {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    }
};
