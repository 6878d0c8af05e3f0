/// A button beside the main one.
ButtonBase {
    fill: Colors.cardBackground
    outline: Colors.border
}
